#include "lua/conversion.h"

#include <stdexcept>

#include "lua/iterator_state.h"

namespace vesper::lua {
namespace {

constexpr std::size_t maximumParts = std::size_t{1} << 22;

class Exporter {
public:
    LuaValue convert(const Value& value, std::size_t depth) {
        if (depth > maximumPublicDepth)
            throw std::runtime_error("value nesting is too deep to bridge into VesperScript");
        if (++parts_ > maximumParts) throw std::runtime_error("value is too large to leave VesperLua");
        switch (value.kind()) {
            case ValueKind::Nil:
                return {};
            case ValueKind::Integer:
                return LuaValue(value.integerValue());
            case ValueKind::Float:
                return LuaValue(value.floatValue());
            case ValueKind::Boolean:
                return LuaValue(value.booleanValue());
            case ValueKind::String:
                return LuaValue(std::string(value.letters()));
            case ValueKind::Table:
                return convertTable(value.table(), depth + 1);
            default:
                return LuaValue(LuaValue::Function{});
        }
    }

private:
    LuaValue convertTable(const Table& table, std::size_t depth) {
        const std::size_t length = table.length();
        if (table.entryCount() == 0 && hasOnlyNilsBehind(table, length)) {
            LuaValue::Array items;
            for (std::size_t i = 0; i < length; ++i) items.push_back(convert(table.array()[i], depth));
            return LuaValue::makeArray(std::move(items));
        }
        LuaValue::Map entries;
        EntryIterator iterator{Value(const_cast<Table*>(&table))};
        Value key;
        Value item;
        while (iterator.nextPair(key, item)) entries.emplace_back(key.toString(), convert(item, depth));
        return LuaValue::makeMap(std::move(entries));
    }
    static bool hasOnlyNilsBehind(const Table& table, std::size_t length) {
        for (std::size_t i = length; i < table.array().size(); ++i)
            if (!table.array()[i].isNil()) return false;
        return true;
    }

    std::size_t parts_ = 0;
};

Value import(Interpreter& machine, const LuaValue& value, std::size_t depth) {
    if (depth > maximumPublicDepth) throw std::runtime_error("value nesting is too deep to bridge into Lua");
    switch (value.kind()) {
        case LuaValue::Kind::Integer:
            return Value::integer(value.asInteger());
        case LuaValue::Kind::Float:
            return Value::number(value.asFloat());
        case LuaValue::Kind::Boolean:
            return Value::boolean(value.asBoolean());
        case LuaValue::Kind::String:
            return Value::text(value.asString());
        case LuaValue::Kind::Array: {
            Value table = machine.makeTable(value.asArray().size());
            std::int64_t position = 0;
            for (const LuaValue& item : value.asArray())
                table.table().set(++position, import(machine, item, depth + 1));
            return table;
        }
        case LuaValue::Kind::Map: {
            Value table = machine.makeTable(0, value.asMap().size());
            for (const auto& [key, item] : value.asMap())
                table.table().set(key, import(machine, item, depth + 1));
            return table;
        }
        default:
            return {};
    }
}

}  // namespace

LuaValue valueToPublic(const Value& value) {
    return Exporter().convert(value, 0);
}

Value publicToValue(Interpreter& machine, const LuaValue& value) {
    return import(machine, value, 0);
}

}  // namespace vesper::lua
