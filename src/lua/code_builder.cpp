#include "lua/code_builder.h"

#include <algorithm>
#include <bit>

#include "guest/location_error.h"

namespace vesper::lua {
namespace {

constexpr std::size_t maximumRegisters = 30'000;

std::string constantKey(const Value& value) {
    std::string key(1, static_cast<char>('0' + static_cast<int>(value.kind())));
    switch (value.kind()) {
        case ValueKind::Integer:
            return key + std::to_string(value.integerValue());
        case ValueKind::Float:
            return key + std::to_string(std::bit_cast<std::uint64_t>(value.floatValue()));
        case ValueKind::Boolean:
            return key + (value.booleanValue() ? '1' : '0');
        case ValueKind::String:
            return key.append(value.letters());
        default:
            return key;
    }
}

}  // namespace

CodeBuilder::CodeBuilder(const FunctionExpr& function, CodeBuilder* parent, Value chunkName,
                         kelmora::guest::SharedSource source)
    : function_(function), parent_(parent), prototype_(kelmora::makeRef<Prototype>()) {
    prototype_->chunkName = std::move(chunkName);
    prototype_->source = std::move(source);
    prototype_->name = function.name;
}

void CodeBuilder::emit(Opcode opcode, std::size_t a, std::size_t b, std::size_t c, std::uint32_t line) {
    prototype_->code.push_back({opcode, static_cast<std::uint16_t>(a), static_cast<std::uint16_t>(b),
                                static_cast<std::uint16_t>(c)});
    prototype_->lines.push_back(line);
}

void CodeBuilder::emitWide(Opcode opcode, std::size_t a, std::int64_t wide, std::uint32_t line) {
    emit(opcode, a, 0, 0, line);
    prototype_->code.back().setWide(static_cast<std::int32_t>(wide));
}

std::size_t CodeBuilder::emitJump(Opcode opcode, std::size_t a, std::uint32_t line) {
    emit(opcode, a, 0, 0, line);
    return here() - 1;
}

void CodeBuilder::patch(std::size_t jump, std::size_t target) {
    prototype_->code[jump].setWide(
        static_cast<std::int32_t>(static_cast<std::int64_t>(target) - static_cast<std::int64_t>(jump) - 1));
}

void CodeBuilder::patchHere(const JumpList& jumps) {
    for (const std::size_t jump : jumps) patch(jump, here());
}

std::uint32_t CodeBuilder::constant(const Value& value) {
    const auto next = static_cast<std::uint32_t>(prototype_->constants.size());
    const auto [entry, isNew] = constants_.emplace(constantKey(value), next);
    if (isNew) prototype_->constants.push_back(value);
    return entry->second;
}

Register CodeBuilder::allocate(std::uint32_t line, std::size_t count) {
    const std::size_t first = free_;
    free_ += count;
    if (free_ > maximumRegisters)
        kelmora::guest::failParse(prototype_->chunkName.letters(), {line, 0},
                                  "function needs too many local variables and values");
    prototype_->registers = std::max(prototype_->registers, static_cast<std::uint16_t>(free_));
    return static_cast<Register>(first);
}

std::uint16_t CodeBuilder::captureIndex(const LocalVariable& variable) {
    if (const auto found = captures_.find(&variable); found != captures_.end()) return found->second;
    CaptureSource source;
    if (parent_->isOwnName(variable)) {
        source.from = CaptureSource::From::Self;
    } else if (variable.owner == &parent_->function_) {
        source = {CaptureSource::From::Register, variable.place};
    } else {
        source = {CaptureSource::From::Capture, parent_->captureIndex(variable)};
    }
    const auto index = static_cast<std::uint16_t>(prototype_->captures.size());
    prototype_->captures.push_back(source);
    captures_.emplace(&variable, index);
    return index;
}

kelmora::Ref<const Prototype> CodeBuilder::finish() {
    prototype_->parameters = static_cast<std::uint16_t>(function_.parameters.size());
    return kelmora::Ref<const Prototype>(prototype_.get());
}

}  // namespace vesper::lua
