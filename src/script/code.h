#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "script/place.h"
#include "script/token.h"

namespace kelmora {

struct BytecodeProgram;
struct Interpreter;
struct ParsedScriptLine;

// What an instruction does with its operands. A result goes to `a`.
#define VESPER_OPERATIONS(OPERATION)                                                                    \
    /* a = b; Take leaves nothing behind */                                                             \
    OPERATION(Copy)                                                                                     \
    OPERATION(Take)                                                                                     \
    OPERATION(First) /* of the multi value in a, if it is one */                                        \
    OPERATION(Drop)                                                                                     \
    OPERATION(SetLocal)                                                                                 \
    OPERATION(Deal) /* b among the names of the line's assignment */                                    \
    OPERATION(ReadScoped)                                                                               \
    OPERATION(Varargs)                                                                                  \
    /* a = b operation c; the last for all kinds of operators and values */                             \
    OPERATION(Add)                                                                                      \
    OPERATION(Subtract)                                                                                 \
    OPERATION(Multiply)                                                                                 \
    OPERATION(IntegerDivide)                                                                            \
    OPERATION(Remainder)                                                                                \
    OPERATION(Operate)                                                                                  \
    /* the same where c is the integer constant `number` */                                             \
    OPERATION(AddInteger)                                                                               \
    OPERATION(SubtractInteger)                                                                          \
    OPERATION(MultiplyInteger)                                                                          \
    OPERATION(IntegerDivideInteger)                                                                     \
    OPERATION(RemainderInteger)                                                                         \
    /* the result goes on the stack, by way of a if it is no integer */                                 \
    OPERATION(PushAdd)                                                                                  \
    OPERATION(PushSubtract)                                                                             \
    OPERATION(PushAddInteger)                                                                           \
    OPERATION(PushSubtractInteger)                                                                      \
    /* a = a operation b */                                                                             \
    OPERATION(AddTo)                                                                                    \
    OPERATION(SubtractFrom)                                                                             \
    OPERATION(Update)                                                                                   \
    OPERATION(Negate)                                                                                   \
    OPERATION(Not)                                                                                      \
    OPERATION(Length)                                                                                   \
    OPERATION(Compare)                                                                                  \
    /* by `distance` */                                                                                 \
    OPERATION(Jump)                                                                                     \
    OPERATION(Loop) /* counted as a step */                                                             \
    OPERATION(JumpIf)                                                                                   \
    OPERATION(JumpUnless)                                                                               \
    OPERATION(KeepIf) /* jumps with the value where it is */                                            \
    OPERATION(KeepUnless)                                                                               \
    OPERATION(JumpIfEqual)                                                                              \
    OPERATION(JumpIfNotEqual)                                                                           \
    OPERATION(JumpIfLess)                                                                               \
    OPERATION(JumpIfGreater)                                                                            \
    OPERATION(JumpIfLessEqual)                                                                          \
    OPERATION(JumpIfGreaterEqual)                                                                       \
    OPERATION(JumpUnlessEqual)                                                                          \
    OPERATION(JumpUnlessNotEqual)                                                                       \
    OPERATION(JumpUnlessLess)                                                                           \
    OPERATION(JumpUnlessGreater)                                                                        \
    OPERATION(JumpUnlessLessEqual)                                                                      \
    OPERATION(JumpUnlessGreaterEqual)                                                                   \
    /* c is the integer constant `number` */                                                            \
    OPERATION(JumpIfEqualInteger)                                                                       \
    OPERATION(JumpIfNotEqualInteger)                                                                    \
    OPERATION(JumpIfLessInteger)                                                                        \
    OPERATION(JumpIfGreaterInteger)                                                                     \
    OPERATION(JumpIfLessEqualInteger)                                                                   \
    OPERATION(JumpIfGreaterEqualInteger)                                                                \
    OPERATION(JumpUnlessEqualInteger)                                                                   \
    OPERATION(JumpUnlessNotEqualInteger)                                                                \
    OPERATION(JumpUnlessLessInteger)                                                                    \
    OPERATION(JumpUnlessGreaterInteger)                                                                 \
    OPERATION(JumpUnlessLessEqualInteger)                                                               \
    OPERATION(JumpUnlessGreaterEqualInteger)                                                            \
    OPERATION(Element)       /* a = b[c] */                                                             \
    OPERATION(SetElement)    /* a[b] = c */                                                             \
    OPERATION(UpdateElement) /* a[b] = a[b] operation c */                                              \
    OPERATION(NewArray)      /* with room for `number` items */                                         \
    OPERATION(AddItems)      /* the `number` values on top of the stack */                              \
    OPERATION(NewTable)                                                                                 \
    OPERATION(CheckKey)                                                                                 \
    OPERATION(SetEntry) /* a[b] = c in a table that is being made */                                    \
    OPERATION(Push)                                                                                     \
    OPERATION(PushTaken)                                                                                \
    OPERATION(Pop)                                                                                      \
    /* what stands in the next place becomes part of the stack, and back */                             \
    OPERATION(Keep)                                                                                     \
    OPERATION(Retake)                                                                                   \
    /* b, or what lies under the arguments, with the `number` values on top of the stack */             \
    OPERATION(Call)                                                                                     \
    OPERATION(CallPushed)                                                                               \
    /* b[c] to be called, on the stack: of a string its method, and the string as its first argument */ \
    OPERATION(Member)                                                                                   \
    OPERATION(CallMember)                                                                               \
    /* the line by its tokens */                                                                        \
    OPERATION(RunLine)                                                                                  \
    OPERATION(TestLine)                                                                                 \
    OPERATION(ReturnLine)                                                                               \
    OPERATION(OpenForLine)                                                                              \
    OPERATION(Declare)                                                                                  \
    /* blocks: with a scope of locals; with what labels and writes to locals outside them need */       \
    OPERATION(OpenScope)                                                                                \
    OPERATION(CloseScope)                                                                               \
    OPERATION(OpenBlock)                                                                                \
    OPERATION(CloseBlock)                                                                               \
    /* loops: of numbers from a to b by c, over containers */                                           \
    OPERATION(OpenFor)                                                                                  \
    OPERATION(TestFor)                                                                                  \
    OPERATION(NextFor)                                                                                  \
    OPERATION(CloseFor)                                                                                 \
    OPERATION(OpenWalk)                                                                                 \
    OPERATION(NextWalk)                                                                                 \
    OPERATION(CloseWalk)                                                                                \
    OPERATION(Fault)                                                                                    \
    /* out of a function, out of the code */                                                            \
    OPERATION(Return)                                                                                   \
    OPERATION(ReturnNothing)                                                                            \
    OPERATION(Finish)                                                                                   \
    OPERATION(FinishNothing)                                                                            \
    /* of attentive code: between steps, behind steps, out with `number` blocks that each end a step */ \
    OPERATION(Before)                                                                                   \
    OPERATION(After)                                                                                    \
    OPERATION(LeaveServed)

enum class Operation : std::uint8_t {
#define VESPER_OPERATION_NAME(name) name,
    VESPER_OPERATIONS(VESPER_OPERATION_NAME)
#undef VESPER_OPERATION_NAME
};

struct Instruction {
    const void* handler = nullptr;
    Operation operation = Operation::Fault;
    TokenKind kind = TokenKind::Unknown;  // of an operator
    std::uint8_t flags = 0;
    std::uint8_t temporaries = 0;  // the operands that are such, whose values are used up
    std::uint32_t number = 0;      // count, index, or integer constant
    union {
        Place* a = nullptr;
        std::ptrdiff_t distance;  // of a jump, in bytes
    };
    Place* b = nullptr;
    Place* c = nullptr;

    const Instruction* target() const {
        return reinterpret_cast<const Instruction*>(reinterpret_cast<const char*>(this) + distance);
    }
    std::int32_t integer() const { return static_cast<std::int32_t>(number); }

    static constexpr std::uint8_t usesUpA = 1;
    static constexpr std::uint8_t usesUpB = 2;
    static constexpr std::uint8_t usesUpC = 4;
};

// Where an instruction comes from.
struct CodeSite {
    const ParsedScriptLine* line = nullptr;  // null for an expression that the line's own code evaluates
    std::uint32_t depth = 0;                 // blocks around it in its function
};

// The message of a fault, and the token that it points at, if it has a place; the statement of a test.
struct CodeText {
    const char* text;
    const char* token = nullptr;
};

// What becomes of a call's result.
struct CallFlags {
    static constexpr std::uint8_t dropsResult = 1;  // what holds no object may be written to `a` all the same
};

// What an OpenBlock does.
struct BlockFlags {
    static constexpr std::uint8_t opensScope = 1;  // of its own in any case
    static constexpr std::uint8_t keepsScope = 2;  // that of the statement around it
    static constexpr std::uint8_t holdsLabels = 4;
};

// A block of the code.
struct CodeBlock {
    std::uint32_t chunk = 0;
    std::vector<std::uint32_t> starts;  // of its steps
    std::uint32_t exit = 0;             // closes the block for a jump that goes on outside
};

// A function's body, a program or a lone expression as one row of instructions, for one interpreter.
//
// Jumps, turns of coroutines and soft errors are looked for between statements. Plain code does not look: it
// notices behind each call that there is something to look for, and goes over to the attentive code of the
// same body, at the same place, until there is nothing left. Both have the same calls and steps in the same
// order.
struct Code {
    const BytecodeProgram* program = nullptr;  // null for a lone expression
    std::uint32_t chunk = 0;
    bool isFunction = false;
    std::vector<Instruction> instructions;
    std::vector<CodeSite> sites;             // one for each instruction
    std::vector<std::uint32_t> behindCalls;  // the places behind what may run script
    struct StepPlace {
        std::uint32_t at;
        std::uint32_t block;
    };
    std::vector<StepPlace> betweenSteps;
    std::vector<CodeBlock> blocks;  // the outermost first
    std::deque<ValuePlace> constants;
    std::vector<CodeText> texts;
    const Code* plain = nullptr;                    // of attentive code
    mutable std::unique_ptr<const Code> attentive;  // of plain code, made when it is first needed

    bool isAttentive() const { return plain != nullptr; }
    const Instruction* begin() const { return instructions.data(); }
    std::size_t placeOf(const Instruction* at) const { return static_cast<std::size_t>(at - begin()); }
    const CodeSite& siteOf(const Instruction* at) const { return sites[placeOf(at)]; }
};

}  // namespace kelmora
