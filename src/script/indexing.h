#pragma once

#include <cstdint>
#include <vector>

#include "script/operators.h"
#include "script/table_object.h"
#include "script/variable.h"

namespace kelmora {

// The key as a table knows it. Borrows a string; raises for keys that are no string, number or bool.
inline TableKey tableKeyOf(const Variable& key) {
    if (key.isInt()) return TableKey(key.intValue());
    if (key.isString()) return TableKey(key.stringObject());
    return TableKey(keyToString(key));
}

// Null for keys that are neither strings nor integers, too.
const Variable* findInTable(const TableObject& table, const Variable& key);
// The element where it stands. Null for one that is not there, and for containers and keys that take longer.
[[gnu::always_inline]] inline const Variable* findElement(const Variable& container, const Variable& key) {
    if (container.isArray() && key.isInt()) {
        const std::vector<Variable>& items = container.items();
        const auto position = static_cast<std::uint32_t>(key.intValue()) - 1u;
        return position < items.size() ? &items[position] : nullptr;
    }
    return container.isTable() ? findInTable(container.table(), key) : nullptr;
}
[[gnu::always_inline]] inline Variable* findElementMutable(const Variable& container, const Variable& key) {
    return const_cast<Variable*>(findElement(container, key));
}

}  // namespace kelmora
