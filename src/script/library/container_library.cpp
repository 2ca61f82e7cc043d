#include <algorithm>

#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

bool isContainer(const Variable& value) {
    return value.isArray() || value.isTable();
}

Variable pop(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "pop(array) requires exactly 1 argument");
    require(arguments[0].isArray(), "pop(array): argument must be an array");
    std::vector<Variable>& items = arguments[0].items();
    require(!items.empty(), "pop(array): array is empty");
    Variable last = std::move(items.back());
    items.pop_back();
    return last;
}

Variable clear(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "clear(container) requires exactly 1 argument");
    require(isContainer(arguments[0]), "clear(container): container must be an array or table");
    if (arguments[0].isTable()) {
        arguments[0].table().clear();
    } else {
        const auto dropped = std::exchange(arguments[0].items(), {});
    }
    return {};
}

Variable eraseItem(std::vector<Variable>& items, const Variable& index) {
    require(index.isInt(), "erase(array, index): index must be an int");
    const std::int64_t position = index.intValue();
    if (position < 1 || position > static_cast<std::int64_t>(items.size())) return Variable::boolean(false);
    const Variable dropped = std::move(items[static_cast<std::size_t>(position - 1)]);
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(position - 1));
    return Variable::boolean(true);
}

Variable erase(Interpreter&, Arguments arguments) {
    require(arguments.size() == 2, "erase(container, keyOrIndex) requires exactly 2 arguments");
    require(isContainer(arguments[0]), "erase(container, keyOrIndex): container must be an array or table");
    if (arguments[0].isArray()) return eraseItem(arguments[0].items(), arguments[1]);
    return Variable::boolean(arguments[0].table().erase(TableKey(keyToString(arguments[1]))));
}

Variable contains(Interpreter&, Arguments arguments) {
    require(arguments.size() == 2, "contains(container, valueOrKey) requires exactly 2 arguments");
    require(isContainer(arguments[0]),
            "contains(container, valueOrKey): container must be an array or table");
    const Variable& wanted = arguments[1];
    if (arguments[0].isTable())
        return Variable::boolean(arguments[0].table().find(TableKey(keyToString(wanted))) != nullptr);
    const std::vector<Variable>& items = arguments[0].items();
    return Variable::boolean(std::any_of(items.begin(), items.end(),
                                         [&](const Variable& item) { return variablesEqual(item, wanted); }));
}

Variable keys(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isTable(), "keys(table) requires exactly 1 table argument");
    return Variable::array(arguments[0].table().sortedKeys()->keyValues);
}

Variable values(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "values(container) requires exactly 1 argument");
    require(isContainer(arguments[0]), "values(container): container must be an array or table");
    if (arguments[0].isArray()) return Variable::array(arguments[0].items());
    const TableObject& table = arguments[0].table();
    std::vector<Variable> found;
    const auto sorted = table.sortedKeys();
    for (std::size_t i = 0; i < sorted->keys.size(); ++i) found.push_back(*table.findListed(*sorted, i));
    return Variable::array(std::move(found));
}

Variable pairOf(Variable key, Variable value) {
    return Variable::array({std::move(key), std::move(value)});
}

Variable numberedPairs(const std::vector<Variable>& items) {
    std::vector<Variable> list;
    list.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        list.push_back(pairOf(Variable::integer(static_cast<std::int32_t>(i + 1)), items[i]));
    return Variable::array(std::move(list));
}

Variable pairs(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "pairs(container) requires exactly 1 argument");
    require(isContainer(arguments[0]), "pairs(container) expects an array or table");
    if (arguments[0].isArray()) return numberedPairs(arguments[0].items());
    const TableObject& table = arguments[0].table();
    const auto sorted = table.sortedKeys();
    std::vector<Variable> list;
    for (std::size_t i = 0; i < sorted->keys.size(); ++i)
        list.push_back(pairOf(sorted->keyValues[i], *table.findListed(*sorted, i)));
    return Variable::array(std::move(list));
}

Variable ipairs(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "ipairs(container) requires exactly 1 argument");
    require(isContainer(arguments[0]), "ipairs(container) expects an array or table");
    return numberedPairs(arguments[0].isArray() ? arguments[0].items() : arguments[0].table().denseValues());
}

Variable nextItem(const std::vector<Variable>& items, const Variable* key) {
    std::int64_t index = 0;
    if (key && !isWholeIndex(*key, index)) return {};
    if (index < 0 || index >= static_cast<std::int64_t>(items.size())) return {};
    const auto at = static_cast<std::size_t>(index);
    return Variable::makeMulti({Variable::integer(static_cast<std::int32_t>(index + 1)), items[at]});
}

Variable next(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 || arguments.size() == 2,
            "next(container[, key]) requires 1 or 2 arguments");
    require(isContainer(arguments[0]), "next(container[, key]) expects an array or table");
    const Variable* key = arguments.size() == 2 && !arguments[1].isNot() ? &arguments[1] : nullptr;
    if (arguments[0].isArray()) return nextItem(arguments[0].items(), key);
    const TableObject& table = arguments[0].table();
    const auto sorted = table.sortedKeys();
    const std::size_t at = key ? sorted->find(keyToString(*key)) + 1 : 0;
    if (at >= sorted->keys.size()) return {};
    return Variable::makeMulti({sorted->keyValues[at], *table.findListed(*sorted, at)});
}

Variable select(Interpreter&, Arguments arguments) {
    require(arguments.size() >= 2, "select(index, values...) requires at least 2 arguments");
    require(arguments[0].isInt(), "select(index, values...) requires an integer index");
    require(arguments[0].intValue() >= 1, "select index must be >= 1");
    std::vector<Variable> all;
    for (const Variable& value : arguments.subspan(1)) {
        if (value.isMulti()) {
            all.insert(all.end(), value.values().begin(), value.values().end());
        } else {
            all.push_back(value);
        }
    }
    const auto skipped = std::min(all.size(), static_cast<std::size_t>(arguments[0].intValue()) - 1);
    all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(skipped));
    return packResults(std::move(all));
}

Variable array(Interpreter&, Arguments arguments) {
    require(arguments.empty(), "array() takes no arguments");
    return Variable::makeArray();
}

Variable len(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "len(x) requires exactly 1 argument");
    return Variable::integer(arrayLength(arguments[0]));
}

Variable push(Interpreter&, Arguments arguments) {
    require(arguments.size() == 2, "push(array, value) requires exactly 2 arguments");
    require(arguments[0].isArray(), "push(array, value): first argument must be an array");
    arguments[0].items().push_back(arguments[1]);
    return {};
}

Variable reserve(Interpreter&, Arguments arguments) {
    require(arguments.size() == 2, "reserve(array, capacity) requires exactly 2 arguments");
    require(arguments[0].isArray() && arguments[1].isInt(), "reserve(array, capacity) expects (array, int)");
    require(arguments[1].intValue() >= 0, "reserve(array, capacity): capacity must be >= 0");
    // A hint only: what is never filled is not worth the memory of the machine.
    constexpr std::int32_t largestReserve = 1 << 20;
    arguments[0].items().reserve(static_cast<std::size_t>(std::min(arguments[1].intValue(), largestReserve)));
    return {};
}

Variable get(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 2 || arguments.size() == 3,
            "get(container, keyOrIndex[, defaultValue]) requires 2 or 3 arguments");
    Variable value = script.getIndexedValue(arguments[0], arguments[1]);
    return value.isNot() && arguments.size() == 3 ? arguments[2] : value;
}

// The container comes back, since a string is changed in a copy and an array may have become a table.
Variable set(Interpreter&, Arguments arguments) {
    require(arguments.size() == 3, "set(container, keyOrIndex, value) requires exactly 3 arguments");
    require(isContainer(arguments[0]) || arguments[0].isString(),
            "set(container, keyOrIndex, value): container must be an array, table, or string");
    Variable container = arguments[0];
    Interpreter::setIndexedValue(container, arguments[1], arguments[2], true);
    return container;
}

constexpr LibraryEntry entries[] = {
    {"pop", pop},   {"clear", clear},     {"erase", erase}, {"contains", contains},
    {"keys", keys}, {"values", values},   {"pairs", pairs}, {"ipairs", ipairs},
    {"next", next}, {"select", select},   {"array", array}, {"len", len},
    {"push", push}, {"reserve", reserve}, {"get", get},     {"set", set},
};

}  // namespace

std::span<const LibraryEntry> containerLibrary() {
    return entries;
}

}  // namespace kelmora
