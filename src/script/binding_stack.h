#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

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
    const BoundVariable& operator[](BindingIndex place) const {
        return slots_[static_cast<std::size_t>(place)];
    }

    // Good as an end of a range where no variable stands.
    BoundVariable* place(BindingIndex index) { return slots_.get() + index; }

    [[gnu::always_inline]] void push(NameId name, BindingIndex shadowed, Variable&& value) {
        if (size_ == capacity_) grow();
        BoundVariable& slot = (*this)[size_];
        slot.name = name;
        slot.shadowed = shadowed;
        std::construct_at(&slot.value, std::move(value));  // the slot is empty, so nothing is lost
        ++size_;
    }
    // Drops from the top down to this size what `leave` has seen.
    template <typename Leave>
    [[gnu::always_inline]] void dropTo(BindingIndex size, Leave leave) {
        if (size_ <= size) return;
        const BoundVariable* const bottom = place(size);
        BoundVariable* slot = place(size_);
        size_ = size;
        do {
            --slot;
            leave(*slot);
            const Variable old(std::move(slot->value));
        } while (slot != bottom);
    }
    void swap(BindingStack& other) noexcept {
        slots_.swap(other.slots_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    [[gnu::noinline]] void grow() {
        const BindingIndex wider = std::max(16, capacity_ * 2);
        auto slots = std::make_unique<BoundVariable[]>(static_cast<std::size_t>(wider));
        for (BindingIndex place = 0; place < size_; ++place)
            slots[static_cast<std::size_t>(place)] = std::move((*this)[place]);
        slots_ = std::move(slots);
        capacity_ = wider;
    }

    std::unique_ptr<BoundVariable[]> slots_;  // those from size_ on are empty
    BindingIndex size_ = 0;
    BindingIndex capacity_ = 0;
};

}  // namespace kelmora
