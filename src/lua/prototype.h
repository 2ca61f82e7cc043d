#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "guest/traced_error.h"
#include "lua/value.h"

namespace vesper::lua {

// R: register, K: constant, G: global. `wide` is the 32 bits of b and c together; a jump counts from the
// instruction behind its own. Comparisons jump by the word behind them; each has its opposite right behind
// it, which jumps when the comparison does not hold. What ends in Integer has 16 signed bits for an operand.
#define VESPER_LUA_OPCODES(X)                                                     \
    X(Move)          /* R[a] = R[b] */                                            \
    X(Take)          /* R[a] = R[b], which is nil then */                         \
    X(LoadConstant)  /* R[a] = K[wide] */                                         \
    X(LoadInteger)   /* R[a] = wide */                                            \
    X(LoadNil)       /* b registers from R[a] on */                               \
    X(LoadBoolean)   /* R[a] = b != 0 */                                          \
    X(GetGlobal)     /* R[a] = G[wide] */                                         \
    X(SetGlobal)     /* G[wide] = R[a] */                                         \
    X(TakeGlobal)    /* G[wide] = R[a], which is nil then */                      \
    X(GetCapture)    /* R[a] = captures[b] */                                     \
    X(GetCaptureBox) /* R[a] = what the box captures[b] holds */                  \
    X(SetCaptureBox) /* the box captures[a] holds R[b] */                         \
    X(NewBox)        /* R[a] = a new box that holds R[b] */                       \
    X(GetBox)        /* R[a] = what the box R[b] holds */                         \
    X(SetBox)        /* the box R[a] holds R[b] */                                \
    X(LoadSelf)      /* R[a] = the running function */                            \
    X(Closure)       /* R[a] = children[wide] with its captures */                \
    X(NewTable)      /* R[a] = {}, room for b items and c fields */               \
    X(SetList)       /* R[a][next word + i] = R[a + i], i = 1 to b */             \
    X(GetIndex)      /* R[a] = R[b][R[c]] */                                      \
    X(GetField)      /* R[a] = R[b][K[c]] */                                      \
    X(GetItem)       /* R[a] = R[b][c] */                                         \
    X(SetIndex)      /* R[a][R[b]] = R[c] */                                      \
    X(SetField)      /* R[a][K[b]] = R[c] */                                      \
    X(SetItem)       /* R[a][b] = R[c] */                                         \
    X(Add)           /* R[a] = R[b] + R[c], and so on */                          \
    X(Subtract)                                                                   \
    X(Multiply)                                                                   \
    X(Divide)                                                                     \
    X(Modulo)                                                                     \
    X(AddConstant) /* R[a] = R[b] + K[c], and so on */                            \
    X(SubtractConstant)                                                           \
    X(MultiplyConstant)                                                           \
    X(DivideConstant)                                                             \
    X(ModuloConstant)                                                             \
    X(AddInteger) /* R[a] = R[b] + c, and so on */                                \
    X(SubtractInteger)                                                            \
    X(MultiplyInteger)                                                            \
    X(DivideInteger)                                                              \
    X(ModuloInteger) /* c is above 0 */                                           \
    X(Negate)        /* R[a] = -R[b] */                                           \
    X(Not)           /* R[a] = not R[b] */                                        \
    X(Length)        /* R[a] = #R[b] */                                           \
    X(Concat)        /* R[a] = R[b] .. and so on, c of them */                    \
    X(Append)        /* R[a] = R[a] .. R[b] .. and so on, c of them */            \
    X(AppendGlobal)  /* the same of G[next word] */                               \
    X(Jump)                                                                       \
    X(JumpIf)                                                                     \
    X(JumpIfNot)                                                                  \
    X(IfEqual) /* R[a] == R[b] */                                                 \
    X(UnlessEqual)                                                                \
    X(IfEqualConstant) /* R[a] == K[b] */                                         \
    X(UnlessEqualConstant)                                                        \
    X(IfEqualInteger) /* R[a] == b */                                             \
    X(UnlessEqualInteger)                                                         \
    X(IfLess) /* R[a] < R[b] */                                                   \
    X(UnlessLess)                                                                 \
    X(IfLessEqual)                                                                \
    X(UnlessLessEqual)                                                            \
    X(IfLessInteger) /* R[a] < b */                                               \
    X(UnlessLessInteger)                                                          \
    X(IfLessEqualInteger)                                                         \
    X(UnlessLessEqualInteger)                                                     \
    X(IfGreaterInteger)                                                           \
    X(UnlessGreaterInteger)                                                       \
    X(IfGreaterEqualInteger)                                                      \
    X(UnlessGreaterEqualInteger)                                                  \
    X(Call)      /* R[a](b values behind it), c results */                        \
    X(Method)    /* R[a + 1] = R[b], R[a] = R[b][K[c]] */                         \
    X(Return)    /* b values from R[a] on */                                      \
    X(ReturnOne) /* R[a] */                                                       \
    X(ReturnNone)                                                                 \
    X(ForPrepare)      /* jumps behind the loop when there is no round */         \
    X(ForLoop)         /* jumps to the body */                                    \
    X(IteratorPrepare) /* checks R[a] */                                          \
    X(IteratorNext)    /* b values from R[a + 1] on; the word behind jumps out */ \
    X(IteratorCheck)   /* behind a call for them: jumps out on nil */

enum class Opcode : std::uint16_t {
#define VESPER_LUA_OPCODE(name) name,
    VESPER_LUA_OPCODES(VESPER_LUA_OPCODE)
#undef VESPER_LUA_OPCODE
};

// As a count of values: as many as there are. Counts that are known are far below.
constexpr std::uint16_t manyValues = 0xFFFF;

// One word, so that the loop needs one register for it: opcode, a, b and c from the lowest bits on.
class Instruction {
public:
    Instruction() = default;
    Instruction(Opcode opcode, std::uint16_t a, std::uint16_t b, std::uint16_t c)
        : word_(static_cast<std::uint64_t>(opcode) | std::uint64_t{a} << 16 | std::uint64_t{b} << 32 |
                std::uint64_t{c} << 48) {}

    std::size_t number() const { return static_cast<std::uint16_t>(word_); }
    std::uint16_t a() const { return static_cast<std::uint16_t>(word_ >> 16); }
    std::uint16_t b() const { return static_cast<std::uint16_t>(word_ >> 32); }
    std::uint16_t c() const { return static_cast<std::uint16_t>(word_ >> 48); }
    std::int16_t signedB() const { return static_cast<std::int16_t>(b()); }
    std::int16_t signedC() const { return static_cast<std::int16_t>(c()); }
    std::int32_t wide() const { return static_cast<std::int32_t>(word_ >> 32); }
    void setWide(std::int32_t value) {
        word_ = (word_ & 0xFFFFFFFFu) | std::uint64_t{static_cast<std::uint32_t>(value)} << 32;
    }

private:
    std::uint64_t word_ = 0;
};
static_assert(sizeof(Instruction) == 8);

// Where a new function finds a value that it captures: in the frame of the one that makes it, among the
// captures of that one, or it is that one itself.
struct CaptureSource {
    enum class From : std::uint8_t { Register, Capture, Self };
    From from = From::Register;
    std::uint16_t index = 0;
};

// The compiled form of one function of a source.
struct Prototype : kelmora::RefCounted {
    std::vector<Instruction> code;
    std::vector<std::uint32_t> lines;  // of each instruction
    std::vector<Value> constants;
    std::vector<kelmora::Ref<const Prototype>> children;
    std::vector<CaptureSource> captures;
    Value chunkName;
    std::uint16_t parameters = 0;
    std::uint16_t registers = 0;
    // For the trails of failures.
    std::string name;  // empty without one
    kelmora::guest::SharedSource source;
};

}  // namespace vesper::lua
