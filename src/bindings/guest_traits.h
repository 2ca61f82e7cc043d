#pragma once

#include "bindings/value_bridge.h"
#include "lua/lua_vm.h"
#include "rwby/map_object.h"
#include "rwby/ruby_vm.h"

namespace kelmora {

struct LuaGuest {
    using Machine = vesper::lua::LuaVM;
    using Value = vesper::lua::LuaValue;
    using Items = std::vector<Value>;
    static constexpr std::string_view name = "Lua";

    static Value nil() { return {}; }
    static Value integer(std::int64_t value) { return Value(value); }
    static Value number(double value) { return Value(value); }
    static Value boolean(bool value) { return Value(value); }
    static Value text(const std::string& value) { return Value(value); }
    static Value array(Items items) { return Value::makeArray(std::move(items)); }
    static Value map(std::vector<std::pair<std::string, Value>> entries) {
        return Value::makeMap(std::move(entries));
    }

    static BridgeKind kindOf(const Value& value) {
        const auto kind = static_cast<BridgeKind>(value.kind());
        return kind <= BridgeKind::Map ? kind : BridgeKind::Other;
    }
    static std::string_view typeName(const Value& value) {
        return vesper::lua::luaValueTypeName(value.kind());
    }
    static std::int64_t integerOf(const Value& value) { return value.asInteger(); }
    static double numberOf(const Value& value) { return value.asFloat(); }
    static bool booleanOf(const Value& value) { return value.asBoolean(); }
    static const std::string& textOf(const Value& value) { return value.asString(); }
    static const Items& itemsOf(const Value& value) { return value.asArray(); }
    template <typename Visit>
    static void forEachEntry(const Value& value, Visit&& visit) {
        for (const auto& [key, held] : value.asMap()) visit(key, held);
    }
};

struct RubyGuest {
    using Machine = vesper::ruby::RubyVM;
    using Value = vesper::ruby::RubyValue;
    using Items = vesper::ruby::RubyItems;
    static constexpr std::string_view name = "Ruby";

    static Value nil() { return {}; }
    static Value integer(std::int64_t value) { return Value::integer(value); }
    static Value number(double value) { return Value::number(value); }
    static Value boolean(bool value) { return Value::boolean(value); }
    static Value text(const std::string& value) { return Value::text(value); }
    static Value array(Items items) { return Value::array(std::move(items)); }
    static Value map(std::vector<std::pair<std::string, Value>> entries) {
        Value made = Value::makeMap();
        for (auto& [key, value] : entries) made.mapObject().set(key, std::move(value));
        return made;
    }

    static BridgeKind kindOf(const Value& value) {
        const auto kind = static_cast<BridgeKind>(value.type());
        return kind <= BridgeKind::Map ? kind : BridgeKind::Other;
    }
    static std::string_view typeName(const Value& value) {
        return vesper::ruby::rubyValueTypeName(value.type());
    }
    static std::int64_t integerOf(const Value& value) { return value.integerValue(); }
    static double numberOf(const Value& value) { return value.floatValue(); }
    static bool booleanOf(const Value& value) { return value.booleanValue(); }
    static std::string_view textOf(const Value& value) { return value.asString(); }
    static const Items& itemsOf(const Value& value) { return value.items(); }
    template <typename Visit>
    static void forEachEntry(const Value& value, Visit&& visit) {
        for (const auto& entry : value.mapObject().entries()) visit(entry.key->text(), entry.value);
    }
};

// The kinds of both guests count as the bridge's do.
static_assert(static_cast<int>(vesper::lua::LuaValue::Kind::Map) == static_cast<int>(BridgeKind::Map));
static_assert(static_cast<int>(vesper::ruby::RubyValueType::Map) == static_cast<int>(BridgeKind::Map));

template <typename Guest>
typename Guest::Value intoGuest(const Variable& value, std::string_view context) {
    return BridgeIntoGuest<Guest>(context).convert(value);
}
template <typename Guest>
Variable outOfGuest(const typename Guest::Value& value, std::string_view context) {
    return BridgeOutOfGuest<Guest>(context).convert(value);
}

}  // namespace kelmora
