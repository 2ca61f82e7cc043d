#pragma once

#include "lua/interpreter.h"
#include "lua/lua_value.h"

namespace vesper::lua {

// Containers may stand 64 deep within each other.
constexpr std::size_t maximumPublicDepth = 64;

// Tables whose keys are exactly 1 to n, the empty one among them, leave as arrays, others as maps with text
// keys. Raises for what is nested too deeply or too large.
LuaValue valueToPublic(const Value& value);
Value publicToValue(Interpreter& machine, const LuaValue& value);

}  // namespace vesper::lua
