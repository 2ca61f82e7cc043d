#include "plush/shader/program_builder.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kelmora::plush_shader::detail {

ProgramBuilder::ProgramBuilder(std::string source, const TokenCursor& cursor)
    : cursor_(cursor), program_(std::make_shared<Program>()) {
    program_->source = std::move(source);
}

Slot ProgramBuilder::newSlot() {
    if (nextSlot_ == slotLimit) cursor_.fail("shader uses too many variables");
    return nextSlot_++;
}

Slot ProgramBuilder::constant(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const auto known = constants_.find(bits);
    if (known != constants_.end()) return known->second;
    const Slot slot = newSlot();
    constants_.emplace(bits, slot);
    program_->constants.push_back({slot, value});
    return slot;
}

Slot ProgramBuilder::uniform(const std::string& name) {
    const Slot slot = newSlot();
    program_->uniforms.push_back({name, slot});
    return slot;
}

void ProgramBuilder::markWrite(Slot channel) {
    program_->writeMask = static_cast<std::uint8_t>(program_->writeMask | 1u << channel);
}

Slot ProgramBuilder::compute(Op op, Slot a, Slot b, Slot c) {
    const Slot result = newTemporary();
    emit(op, result, a, b, c);
    return result;
}

Slot ProgramBuilder::heldInTemporary(Slot value) {
    return value & temporaryBit ? value : compute(Op::Mov, value);
}

void ProgramBuilder::land(std::size_t jump) {
    program_->instructions[jump].b = static_cast<std::uint16_t>(program_->instructions.size());
}

void ProgramBuilder::requireReachableTargets() const {
    if (program_->instructions.size() > 65534) cursor_.fail("shader is too long");
}

std::shared_ptr<const Program> ProgramBuilder::finish() {
    const std::uint32_t registers = nextSlot_ + mostTemporaries_;
    if (registers >= 32768) cursor_.fail("shader uses too many registers");
    for (Instruction& instruction : program_->instructions) placeTemporaries(instruction);
    program_->registerCount = registers;
    return std::move(program_);
}

std::size_t ProgramBuilder::emit(Op op, Slot dst, Slot a, Slot b, Slot c) {
    program_->instructions.push_back({static_cast<std::uint16_t>(op), dst, a, b, c});
    return program_->instructions.size() - 1;
}

// More than the field holds are only counted: `finish` refuses them.
Slot ProgramBuilder::newTemporary() {
    const auto index = static_cast<Slot>(temporaries_++ & slotLimit);
    mostTemporaries_ = std::max(mostTemporaries_, temporaries_);
    return index | temporaryBit;
}

void ProgramBuilder::placeTemporaries(Instruction& instruction) const {
    const auto place = [this](std::uint16_t& field) {
        if (field & temporaryBit) field = static_cast<Slot>(nextSlot_ + (field & slotLimit));
    };
    const Op op = instruction.operation();
    if (op == Op::Jump || op == Op::Halt) return;
    place(instruction.a);
    if (op == Op::Jz) return;
    place(instruction.dst);
    place(instruction.b);
    place(instruction.c);
}

}  // namespace kelmora::plush_shader::detail
