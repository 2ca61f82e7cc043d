#pragma once

#include <cstddef>
#include <cstdint>

#include "script/names.h"
#include "script/variable.h"

namespace kelmora {

// Place in a stack of bindings. `noBinding` is less than every place.
using BindingIndex = std::int32_t;
inline constexpr BindingIndex noBinding = -1;

// Where running code finds a value: a name's cell, a constant, or a value on its way between two operations.
struct Place {
    Variable* value = &Variable::unfound();  // which only names can have
};

// A name of one interpreter. `value` is what a look for the name finds; unfound when only a search can tell.
struct Cell : Place {
    Variable global;
    NameId name = noName;
    BindingIndex newestLocal = noBinding;
    std::uint32_t nativeEntries = 0;
    bool defined = false;  // among the globals
};

// A value with a place of its own.
struct ValuePlace : Place {
    ValuePlace() { value = &own; }
    explicit ValuePlace(const Variable& initial) : own(initial) { value = &own; }
    ValuePlace(const ValuePlace&) = delete;
    ValuePlace& operator=(const ValuePlace&) = delete;

    Variable own;
};

// Values on their way between two instructions. They are held only within a statement; what an expression
// holds while it calls lies on the stack meanwhile.
inline constexpr std::size_t temporaryCount = 512;

}  // namespace kelmora
