#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/number_parse.h"
#include "script/binding.h"
#include "script/table_object.h"

// Values between scripts and a guest language, by copy. A guest is described by its traits:
//     Value, Items        its value outside its machine, and the items of an array
//     name                as messages call it
//     kindOf, typeName    of a value
//     nil, integer, number, boolean, text, array, map        make one
//     integerOf, numberOf, booleanOf, textOf, itemsOf        take one apart
//     forEachEntry        visits a map's keys and values
// Every failure is a binding error under `context`, the qualified name of the calling member.
namespace kelmora {

enum class BridgeKind : std::uint8_t { Nil, Integer, Float, Boolean, String, Array, Map, Other };

// Containers around a value; what a cycle runs into.
constexpr int maximumBridgeDepth = 64;
// Values in all: containers that are shared are copied for each of their places.
constexpr std::size_t maximumBridgedParts = std::size_t{1} << 20;
// A table whose keys are numbers becomes an array as long as its largest key.
constexpr std::int32_t maximumBridgedArray = 1 << 26;

inline std::string_view variableTypeName(VarType type) {
    switch (type) {
        case VarType::Int:
            return "integer";
        case VarType::Float:
            return "float";
        case VarType::String:
            return "string";
        case VarType::Raw:
            return "raw";
        case VarType::Bool:
            return "boolean";
        case VarType::Pointer:
            return "pointer";
        case VarType::Array:
            return "array";
        case VarType::Multi:
            return "multi";
        case VarType::Table:
            return "table";
        case VarType::Function:
            return "function";
        default:
            return "unknown";
    }
}

template <typename Guest>
class BridgeIntoGuest {
public:
    using Value = typename Guest::Value;

    explicit BridgeIntoGuest(std::string_view context) : context_(context) {}

    Value convert(const Variable& value, int depth = 0) {
        if (depth > maximumBridgeDepth) fail("value nesting is too deep to bridge into ");
        if (++parts_ > maximumBridgedParts) fail("value is too large to bridge into ");
        switch (value.type()) {
            case VarType::Not:
                return Guest::nil();
            case VarType::Int:
                return Guest::integer(value.intValue());
            case VarType::Float:
                return Guest::number(static_cast<double>(value.floatValue()));
            case VarType::String:
                return Guest::text(value.text());
            case VarType::Bool:
                return Guest::boolean(value.boolValue());
            case VarType::Array:
                return items(value.items(), depth);
            case VarType::Multi:
                return items(value.values(), depth);
            case VarType::Table:
                return table(value.table(), depth);
            default:
                fail(std::string("cannot convert VesperScript ")
                         .append(variableTypeName(value.type()))
                         .append(" values into "));
        }
    }

private:
    [[noreturn]] void fail(std::string message) const { bindingError(context_, message.append(Guest::name)); }

    Value items(const std::vector<Variable>& values, int depth) {
        typename Guest::Items converted;
        converted.reserve(values.size());
        for (const Variable& value : values) converted.push_back(convert(value, depth + 1));
        return Guest::array(std::move(converted));
    }

    // The numbers that all keys are; false when one is none.
    static bool numbersOf(const TableKeyList& list, std::vector<std::int32_t>& numbers) {
        for (const Ref<StringObject>& key : list.keys) {
            std::int32_t number = 0;
            if (!parseIntStrict(key->text(), number)) return false;
            numbers.push_back(number);
        }
        return true;
    }
    Value table(const TableObject& table, int depth) {
        const auto sorted = table.sortedKeys();
        std::vector<std::int32_t> numbers;
        const auto valueAt = [&](std::size_t at) {
            return convert(*table.findListed(*sorted, at), depth + 1);
        };
        if (!numbersOf(*sorted, numbers)) {
            std::vector<std::pair<std::string, Value>> entries;
            for (std::size_t i = 0; i < sorted->keys.size(); ++i)
                entries.emplace_back(sorted->keys[i]->text(), valueAt(i));
            return Guest::map(std::move(entries));
        }
        const std::int32_t largest = numbers.empty() ? 0 : *std::max_element(numbers.begin(), numbers.end());
        if (largest > maximumBridgedArray) fail("table keys are too large to bridge into ");
        typename Guest::Items values(static_cast<std::size_t>(std::max(largest, 0)), Guest::nil());
        for (std::size_t i = 0; i < numbers.size(); ++i)
            if (numbers[i] >= 1) values[static_cast<std::size_t>(numbers[i]) - 1] = valueAt(i);
        return Guest::array(std::move(values));
    }

    std::string_view context_;
    std::size_t parts_ = 0;
};

template <typename Guest>
class BridgeOutOfGuest {
public:
    using Value = typename Guest::Value;

    explicit BridgeOutOfGuest(std::string_view context) : context_(context) {}

    Variable convert(const Value& value, int depth = 0) {
        if (depth > maximumBridgeDepth)
            bindingError(context_, "value nesting is too deep to bridge into VesperScript");
        if (++parts_ > maximumBridgedParts)
            bindingError(context_, "value is too large to bridge into VesperScript");
        switch (Guest::kindOf(value)) {
            case BridgeKind::Nil:
                return {};
            case BridgeKind::Integer:
                return integer(Guest::integerOf(value));
            case BridgeKind::Float:
                return number(Guest::numberOf(value));
            case BridgeKind::Boolean:
                return Variable::boolean(Guest::booleanOf(value));
            case BridgeKind::String:
                return Variable::text(std::string(Guest::textOf(value)));
            case BridgeKind::Array: {
                std::vector<Variable> items;
                items.reserve(Guest::itemsOf(value).size());
                for (const Value& item : Guest::itemsOf(value)) items.push_back(convert(item, depth + 1));
                return Variable::array(std::move(items));
            }
            case BridgeKind::Map: {
                Variable table = Variable::makeTable();
                Guest::forEachEntry(value, [&](std::string_view key, const Value& held) {
                    table.table().set(std::string(key), convert(held, depth + 1));
                });
                return table;
            }
            case BridgeKind::Other:
                break;
        }
        bindingError(context_, std::string("cannot convert ")
                                   .append(Guest::name)
                                   .append(" ")
                                   .append(Guest::typeName(value))
                                   .append(" values into VesperScript"));
    }

private:
    static Variable integer(std::int64_t value) {
        if (std::in_range<std::int32_t>(value)) return Variable::integer(static_cast<std::int32_t>(value));
        return Variable::number(static_cast<float>(value));
    }
    Variable number(double value) const {
        const std::string subject = std::string(Guest::name) + " float ";
        if (!std::isfinite(value)) bindingError(context_, subject + "must be finite");
        if (std::fabs(value) > double{std::numeric_limits<float>::max()})
            bindingError(context_, subject + "is outside the VesperScript float range");
        return Variable::number(static_cast<float>(value));
    }

    std::string_view context_;
    std::size_t parts_ = 0;
};

}  // namespace kelmora
