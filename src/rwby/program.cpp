#include "rwby/program.h"

#include "rwby/globals.h"
#include "rwby/lowering.h"

namespace vesper::ruby {
namespace {

void addLocals(const Program& program, CompiledFunction& function) {
    for (const std::string& parameter : function.parameters)
        function.parameterSlots.push_back(function.ensureLocalSlot(parameter));
    for (const Instruction& instruction : function.instructions) {
        if (instruction.op != OpCode::StoreName) continue;
        if (const StringObject* name = program.nameConstant(instruction.a))
            function.ensureLocalSlot(std::string(name->text()));
    }
}

// The constant of the name that an instruction reads or writes, or -1.
std::int32_t nameOf(const Instruction& instruction) {
    switch (instruction.op) {
        case OpCode::LoadName:
        case OpCode::StoreName:
        case OpCode::DefineFunction:
            return instruction.a;
        case OpCode::SetIndex:
            return instruction.a > 0 ? instruction.a - 1 : -1;
        default:
            return -1;
    }
}

void resolveNames(const Program& program, CompiledFunction& function, Globals& globals) {
    const std::size_t count = function.instructions.size();
    function.localSlots.assign(count, -1);
    function.globalSlots.assign(count, -1);
    for (std::size_t i = 0; i < count; ++i) {
        const Instruction& instruction = function.instructions[i];
        const StringObject* name = program.nameConstant(nameOf(instruction));
        if (!name) continue;
        function.globalSlots[i] = globals.ensureGlobalSlot(name->text());
        if (instruction.op == OpCode::DefineFunction || function.localIndex.empty()) continue;
        const auto local = function.localIndex.find(std::string(name->text()));
        if (local != function.localIndex.end()) function.localSlots[i] = local->second;
    }
}

bool hasRepeatedParameter(const CompiledFunction& function) {
    for (std::size_t i = 0; i < function.parameterSlots.size(); ++i)
        if (function.parameterSlots[i] != static_cast<std::int32_t>(i)) return true;
    return false;
}

}  // namespace

std::string describeArgumentExpectation(ArgumentCount expected) {
    const auto counted = [](std::size_t count) {
        return std::to_string(count) + (count == 1 ? " argument" : " arguments");
    };
    if (expected.most == ArgumentCount::any) return "at least " + counted(expected.least);
    if (expected.least == expected.most) return "exactly " + counted(expected.least);
    return "between " + std::to_string(expected.least) + " and " + counted(expected.most);
}

std::int32_t CompiledFunction::ensureLocalSlot(const std::string& local) {
    const auto [place, isNew] = localIndex.emplace(local, static_cast<std::int32_t>(localNames.size()));
    if (isNew) localNames.push_back(local);
    return place->second;
}

const StringObject* Program::nameConstant(std::int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= constants.size()) return nullptr;
    const RubyValue& constant = constants[static_cast<std::size_t>(index)];
    return constant.isString() ? &constant.stringObject() : nullptr;
}

void finaliseProgramMetadata(Program& program, Globals& globals) {
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        CompiledFunction& function = program.functions[i];
        if (i > 0) addLocals(program, function);
        resolveNames(program, function, globals);
        // Both quick forms find a parameter in the slot of its number.
        if (hasRepeatedParameter(function)) continue;
        if (i > 0) function.fast = buildFastForm(program, function);
        function.inner = lowerFunction(program, function, globals);
        if (function.fast.kind == FastKind::None && function.inner.exists())
            function.innerArguments = static_cast<std::int32_t>(function.parameters.size());
    }
}

}  // namespace vesper::ruby
