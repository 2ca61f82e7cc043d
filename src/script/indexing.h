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

// The element where it stands. Null for one that is not there, and for containers and keys that take longer.
inline Variable* findElement(const Variable& container, const Variable& key) {
    if (container.isTable() && (key.isInt() || key.isString())) return container.table().find(tableKeyOf(key));
    if (!container.isArray() || !key.isInt()) return nullptr;
    std::vector<Variable>& items = container.items();
    const auto position = static_cast<std::uint32_t>(key.intValue()) - 1u;
    return position < items.size() ? &items[position] : nullptr;
}

}  // namespace kelmora
