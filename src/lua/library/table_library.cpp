#include <algorithm>

#include "lua/iterator_state.h"
#include "lua/library/arguments.h"
#include "lua/library/library.h"
#include "lua/operations.h"

namespace vesper::lua {
namespace {

void insert(NativeCall& call) {
    requireArgumentCount(call, 2, 3);
    Table& table = requireTable(call, 0);
    const auto length = static_cast<std::int64_t>(table.length());
    if (call.count() == 2) return table.set(length + 1, call[1]);
    const std::int64_t position = requireInteger(call, 1);
    if (position < 1 || position > length + 1) failCall(call, "the position is out of range");
    // The new last item first: only this one can fail.
    if (position <= length) {
        table.set(length + 1, table.array()[static_cast<std::size_t>(length - 1)]);
        Value* items = table.array().data();
        std::move_backward(items + (position - 1), items + (length - 1), items + length);
    }
    table.set(position, call[2]);
}

void remove(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    Table& table = requireTable(call, 0);
    const auto length = static_cast<std::int64_t>(table.length());
    const std::int64_t position = optionalInteger(call, 1, length);
    if (length == 0 && (position == 0 || position == 1)) return call.give({});
    if (position < 1 || position > length + 1) failCall(call, "the position is out of range");
    if (position == length + 1) return call.give({});
    Value* items = table.array().data();
    call.give(std::move(items[position - 1]));
    std::move(items + position, items + length, items + (position - 1));
    table.set(length, {});
}

void concat(NativeCall& call) {
    requireArgumentCount(call, 1, 4);
    const Table& table = requireTable(call, 0);
    const std::string_view separator = optionalString(call, 1, "");
    const std::int64_t first = optionalInteger(call, 2, 1);
    const std::int64_t last = optionalInteger(call, 3, static_cast<std::int64_t>(table.length()));
    std::string text;
    for (std::int64_t i = first; i <= last; ++i) {
        const Value* item = table.find(i);
        if (!item || !(item->isString() || item->isNumber()))
            failCall(call, "item " + std::to_string(i) + " is not a string or number");
        if (item->isString()) {
            text += item->letters();
        } else {
            text += item->toString();
        }
        if (i == last) break;
        text += separator;
        checkTextSize(text.size());
    }
    call.give(Value::text(text));
}

// Merges runs that double in length. Never looks outside the items, whatever the comparator says.
template <typename Less>
void mergeSort(std::vector<Value>& items, const Less& less) {
    std::vector<Value> merged(items.size());
    for (std::size_t width = 1; width < items.size(); width *= 2) {
        for (std::size_t start = 0; start < items.size(); start += 2 * width) {
            const std::size_t middle = std::min(start + width, items.size());
            const std::size_t end = std::min(start + 2 * width, items.size());
            std::size_t left = start;
            std::size_t right = middle;
            for (std::size_t to = start; to < end; ++to) {
                const bool takesRight = left == middle || (right < end && less(items[right], items[left]));
                merged[to] = std::move(items[takesRight ? right++ : left++]);
            }
        }
        items.swap(merged);
    }
}

// Sorts a copy, so that comparators that lie or change the table do no harm.
void sort(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    Table& table = requireTable(call, 0);
    const std::size_t length = table.length();
    const Value* begin = table.array().begin();
    std::vector<Value> items(begin, begin + length);
    if (call[1].isNil()) {
        mergeSort(items, isLess);
    } else {
        requireFunction(call, 1);
        const Value comparator = call[1];
        Interpreter& machine = call.machine();
        mergeSort(items, [&](const Value& a, const Value& b) {
            const Value pair[] = {a, b};
            return machine.callValue(comparator, pair).first().isTruthy();
        });
    }
    for (std::size_t i = 0; i < length; ++i) table.set(static_cast<std::int64_t>(i) + 1, std::move(items[i]));
}

void pack(NativeCall& call) {
    Value table = call.machine().makeTable(call.count(), 1);
    for (std::size_t i = 0; i < call.count(); ++i)
        table.table().set(static_cast<std::int64_t>(i) + 1, call[i]);
    table.table().set("n", Value::integer(static_cast<std::int64_t>(call.count())));
    call.give(std::move(table));
}

void unpack(NativeCall& call) {
    constexpr std::int64_t mostValues = 100'000;
    requireArgumentCount(call, 1, 3);
    const Table& table = requireTable(call, 0);
    const std::int64_t first = optionalInteger(call, 1, 1);
    const std::int64_t last = optionalInteger(call, 2, static_cast<std::int64_t>(table.length()));
    if (first > last) return;
    if (static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first) >= mostValues)
        failCall(call, "too many values");
    for (std::int64_t i = first;; ++i) {
        const Value* item = table.find(i);
        call.give(item ? *item : Value());
        if (i == last) return;
    }
}

// Lists a part of each entry, in the order of the keys.
template <typename Part>
void list(NativeCall& call, Part part) {
    requireArgumentCount(call, 1, 1);
    requireTable(call, 0);
    EntryIterator iterator(call[0]);
    Value made = call.machine().makeTable();
    Value key;
    Value value;
    for (std::int64_t position = 1; iterator.nextPair(key, value); ++position)
        made.table().set(position, part(key, value));
    call.give(std::move(made));
}

void keys(NativeCall& call) {
    list(call, [](const Value& key, const Value&) { return key; });
}

void values(NativeCall& call) {
    list(call, [](const Value&, const Value& value) { return value; });
}

// Tables within it are shared.
void clone(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    requireTable(call, 0);
    EntryIterator iterator(call[0]);
    Value made = call.machine().makeTable();
    Value key;
    Value value;
    while (iterator.nextPair(key, value)) made.table().setKey(key, value);
    call.give(std::move(made));
}

void clear(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    requireTable(call, 0).clear();
}

// Appends the items of the second table to the first, which is the result.
void extend(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    Table& table = requireTable(call, 0);
    const Table& more = requireTable(call, 1);
    const std::size_t added = more.length();
    auto position = static_cast<std::int64_t>(table.length());
    for (std::size_t i = 0; i < added; ++i) table.set(++position, Value(more.array()[i]));
    call.give(call[0]);
}

constexpr LibraryEntry entries[] = {
    {"insert", insert}, {"remove", remove}, {"concat", concat}, {"sort", sort},
    {"pack", pack},     {"keys", keys},     {"values", values}, {"clone", clone},
    {"clear", clear},   {"extend", extend}, {"unpack", unpack},
};

}  // namespace

void bindTableLibrary(Interpreter& machine) {
    bindTable(machine, "table", entries);
}

}  // namespace vesper::lua
