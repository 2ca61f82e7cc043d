#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "plush/shader/program.h"
#include "plush/shader/token_cursor.h"

namespace kelmora::plush_shader::detail {

// The program under construction. Temporaries of expressions are numbered apart, with bit 15 set, until
// `finish` knows how many named slots they stand behind.
class ProgramBuilder {
public:
    ProgramBuilder(std::string source, const TokenCursor& cursor);

    Slot newSlot();
    // Equal values share a slot; values are equal when their bits are.
    Slot constant(float value);
    // A new uniform, which the caller looks for first.
    Slot uniform(const std::string& name);
    void markPixelUse() { program_->usesPixel = true; }
    void markWrite(Slot channel);

    // Temporaries live until the statement ends.
    void beginStatement() { temporaries_ = 0; }
    // Emits an operator; its result is a fresh temporary.
    Slot compute(Op op, Slot a = 0, Slot b = 0, Slot c = 0);
    // The value in a temporary, where a later write to its variable does not reach it.
    Slot heldInTemporary(Slot value);
    void move(Slot target, Slot value) { emit(Op::Mov, target, value); }
    void halt() { emit(Op::Halt); }

    // Jumps whose target `land` sets to the next instruction.
    std::size_t jump() { return emit(Op::Jump); }
    std::size_t jumpIfZero(Slot condition) { return emit(Op::Jz, 0, condition); }
    void land(std::size_t jump);
    // Raises once jump targets no longer fit their field.
    void requireReachableTargets() const;

    std::shared_ptr<const Program> finish();

private:
    static constexpr Slot temporaryBit = 0x8000;
    static constexpr Slot slotLimit = 0x7FFF;

    std::size_t emit(Op op, Slot dst = 0, Slot a = 0, Slot b = 0, Slot c = 0);
    Slot newTemporary();
    void placeTemporaries(Instruction& instruction) const;

    const TokenCursor& cursor_;
    std::shared_ptr<Program> program_;
    std::unordered_map<std::uint32_t, Slot> constants_;
    Slot nextSlot_ = slots::firstFree;
    std::uint32_t temporaries_ = 0;
    std::uint32_t mostTemporaries_ = 0;
};

}  // namespace kelmora::plush_shader::detail
