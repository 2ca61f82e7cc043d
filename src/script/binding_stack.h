#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "script/names.h"
#include "script/variable.h"

namespace kelmora {

// Place in a stack of bindings. `noBinding` is less than every place.
using BindingIndex = std::int32_t;
inline constexpr BindingIndex noBinding = -1;

// A variable of a block or call, and the place of the one with the same name that it hides.
struct BoundVariable {
    NameId name = noName;
    BindingIndex shadowed = noBinding;
    Variable value;
};

// Stack whose slots are kept and used again, so that pushing and dropping are plain stores.
class BindingStack {
public:
    BindingIndex size() const { return size_; }
    BoundVariable& operator[](BindingIndex place) { return slots_[static_cast<std::size_t>(place)]; }
    const BoundVariable& operator[](BindingIndex place) const { return slots_[static_cast<std::size_t>(place)]; }

    void push(NameId name, BindingIndex shadowed, Variable&& value) {
        if (static_cast<std::size_t>(size_) == slots_.size()) grow();
        BoundVariable& binding = (*this)[size_];
        binding.name = name;
        binding.shadowed = shadowed;
        binding.value = std::move(value);
        ++size_;
    }
    void drop() {
        --size_;
        (*this)[size_].value = Variable();
    }
    void swap(BindingStack& other) noexcept {
        slots_.swap(other.slots_);
        std::swap(size_, other.size_);
    }

private:
    void grow() { slots_.resize(std::max<std::size_t>(16, slots_.size() * 2)); }

    std::vector<BoundVariable> slots_;  // those from size_ on are empty
    BindingIndex size_ = 0;
};

}  // namespace kelmora
