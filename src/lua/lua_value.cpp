#include "lua/lua_value.h"

#include <array>

#include "base/saturating.h"
#include "text/number_text.h"

namespace vesper::lua {

LuaValue LuaValue::makeArray(Array items) {
    LuaValue made;
    made.content_ = std::move(items);
    return made;
}

LuaValue LuaValue::makeMap(Map entries) {
    LuaValue made;
    made.content_ = std::move(entries);
    return made;
}

bool LuaValue::isTruthy() const {
    const bool* boolean = std::get_if<bool>(&content_);
    return boolean ? *boolean : !isNil();
}

std::int64_t LuaValue::asInteger() const {
    if (const auto* whole = std::get_if<std::int64_t>(&content_)) return *whole;
    const auto* number = std::get_if<double>(&content_);
    return number ? kelmora::saturatingInt64(*number) : 0;
}

double LuaValue::asFloat() const {
    if (const auto* number = std::get_if<double>(&content_)) return *number;
    const auto* whole = std::get_if<std::int64_t>(&content_);
    return whole ? static_cast<double>(*whole) : 0;
}

std::string LuaValue::toString() const {
    switch (kind()) {
        case Kind::Integer:
            return kelmora::integerText(asInteger());
        case Kind::Float:
            return kelmora::floatText(asFloat());
        case Kind::Boolean:
            return isTruthy() ? "true" : "false";
        case Kind::String:
            return asString();
        default:
            return std::string(luaValueTypeName(kind()));
    }
}

std::string_view luaValueTypeName(LuaValue::Kind kind) {
    static constexpr std::array<std::string_view, 8> names{"nil",    "integer", "float", "boolean",
                                                           "string", "array",   "map",   "function"};
    const auto index = static_cast<std::size_t>(kind);
    return index < names.size() ? names[index] : "unknown";
}

}  // namespace vesper::lua
