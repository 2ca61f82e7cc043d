#pragma once

#include <cstdint>
#include <memory>

#include "script/parsed_header.h"
#include "script/table_object.h"
#include "script/variable.h"

// How far a `for` loop is. Every runner keeps one of these for each loop that it is in.
namespace kelmora {

struct NumericLoop {
    std::int32_t value = 0;
    std::int32_t stop = 0;
    std::int32_t step = 1;  // never 0
    bool started = false;

    // Goes to the next number, which wraps; false behind the last.
    bool next() {
        if (std::exchange(started, true))
            value = static_cast<std::int32_t>(static_cast<std::uint32_t>(value) +
                                              static_cast<std::uint32_t>(step));
        return step > 0 ? value <= stop : value >= stop;
    }
};

// Walks arrays, multi values, the numbered part of tables, and all of a table by its keys. Lengths are read
// anew in each round; keys added meanwhile are not visited, erased ones are left out.
struct SequenceWalk {
    Variable container;
    bool withKeys = false;
    std::shared_ptr<const TableKeyList> keys;  // of a table walked by pairs
    std::size_t position = 0;

    // `key` is set where the walk has keys.
    bool next(Variable& key, Variable& element) {
        if (keys) return nextPair(key, element);
        const Variable* item = itemAt(position);
        if (!item) return false;
        ++position;
        if (withKeys) key = Variable::integer(static_cast<std::int32_t>(position));
        element = *item;
        return true;
    }

private:
    const Variable* itemAt(std::size_t index) const {
        if (container.isTable()) {
            TableObject& table = container.table();
            return index < table.numericLength() ? &table.denseValues()[index] : nullptr;
        }
        const std::vector<Variable>& items = container.isArray() ? container.items() : container.values();
        return index < items.size() ? &items[index] : nullptr;
    }
    bool nextPair(Variable& key, Variable& element) {
        while (position < keys->keys.size()) {
            const std::size_t at = position++;
            const Variable* value = container.table().findListed(*keys, at);
            if (!value) continue;
            key = keys->keyValues[at];
            element = *value;
            return true;
        }
        return false;
    }
};

}  // namespace kelmora
