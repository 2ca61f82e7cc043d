#include "plush/shader/name_resolver.h"

#include <algorithm>

#include "plush/shader/builtin_functions.h"

namespace kelmora::plush_shader::detail {
namespace {

// By slot.
constexpr std::string_view builtinNames[] = {
    "r", "g", "b", "a", "x", "y", "width", "height", "VESPER_GREY_R", "VESPER_GREY_G", "VESPER_GREY_B"};
constexpr std::size_t parameterAliases = 6;

const Slot* find(const std::unordered_map<std::string, Slot>& names, const std::string& name) {
    const auto found = names.find(name);
    return found == names.end() ? nullptr : &found->second;
}

// The number of built-in names for any other name.
Slot builtinSlot(std::string_view name) {
    const auto* found = std::find(std::begin(builtinNames), std::end(builtinNames), name);
    return static_cast<Slot>(found - std::begin(builtinNames));
}

bool isNamedConstant(std::string_view name) {
    return name == "true" || name == "false" || name == "pi";
}

}  // namespace

NameResolver::NameResolver(const CompileOptions& options, const TokenCursor& cursor, ProgramBuilder& builder)
    : options_(options), cursor_(cursor), builder_(builder) {
    const std::vector<std::string>& parameters = options.parameters;
    for (std::size_t i = 0; i < std::min(parameters.size(), parameterAliases); ++i)
        if (!parameters[i].empty()) parameters_[parameters[i]] = static_cast<Slot>(i);
    if (parameters.size() > parameterAliases) uniformsTable_ = parameters[parameterAliases];
}

Slot NameResolver::declareLocal(const std::string& name) {
    return scopes_.back()[name] = builder_.newSlot();
}

Slot NameResolver::read(const std::string& name) {
    if (const Slot* variable = findVariable(name)) return *variable;
    if (const Slot* parameter = find(parameters_, name)) return markedRead(*parameter);
    if (const Slot slot = builtinSlot(name); slot < std::size(builtinNames)) return markedRead(slot);
    if (isNamedConstant(name)) return builder_.constant(name == "pi" ? pi : name == "true" ? 1.0f : 0.0f);
    if (const Slot* known = find(uniforms_, name)) return *known;
    if (!options_.implicitUniforms) cursor_.fail("unknown name '" + name + "'");
    return uniform(name);
}

Slot NameResolver::write(const std::string& name) {
    if (const Slot* variable = findVariable(name)) return *variable;
    if (const Slot* parameter = find(parameters_, name)) return channel(*parameter, name, "");
    if (const Slot slot = builtinSlot(name); slot < std::size(builtinNames))
        return channel(slot, name, "built-in ");
    if (isNamedConstant(name)) cursor_.fail("cannot assign to '" + name + "'");
    if (uniforms_.contains(name)) cursor_.fail("cannot assign to uniform '" + name + "'");
    return scopes_.front()[name] = builder_.newSlot();
}

Slot NameResolver::uniform(const std::string& name) {
    if (const Slot* known = find(uniforms_, name)) return *known;
    return uniforms_[name] = builder_.uniform(name);
}

const Slot* NameResolver::findVariable(const std::string& name) const {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope)
        if (const Slot* found = find(*scope, name)) return found;
    return nullptr;
}

Slot NameResolver::markedRead(Slot slot) {
    if (slot <= slots::y) builder_.markPixelUse();
    return slot;
}

Slot NameResolver::channel(Slot slot, const std::string& name, std::string_view kind) {
    if (slot > slots::a) cursor_.fail("cannot assign to " + std::string(kind) + "'" + name + "'");
    builder_.markWrite(slot);
    return slot;
}

}  // namespace kelmora::plush_shader::detail
