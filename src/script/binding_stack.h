#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <utility>

#include "script/place.h"

namespace kelmora {

// What stands beside a bound value: the name that it carries, and what it hides of it.
struct BindingLink {
    Cell* cell;  // null without a name
    Variable* hidden;
    BindingIndex shadowed;  // of a local, the one of the same name before it
};

// Stack of bound values that never move: pointers to them hold until they are dropped, and those that stand
// side by side are a span.
class BindingStack {
public:
    static constexpr BindingIndex fullCapacity = 1 << 17;

    BindingStack() : BindingStack(fullCapacity) {}
    explicit BindingStack(BindingIndex capacity)
        : values_(std::allocator<Variable>().allocate(static_cast<std::size_t>(capacity))),
          links_(static_cast<BindingLink*>(
              std::calloc(static_cast<std::size_t>(capacity), sizeof(BindingLink)))),
          capacity_(capacity) {
        if (!links_) throw std::bad_alloc();
    }
    BindingStack(BindingStack&& other) noexcept
        : values_(std::exchange(other.values_, nullptr)),
          links_(std::exchange(other.links_, nullptr)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0)) {}
    BindingStack& operator=(BindingStack&& other) noexcept {
        swap(other);
        return *this;
    }
    ~BindingStack() {
        dropTo(0, [](const BindingLink&) {});
        if (!values_) return;
        std::allocator<Variable>().deallocate(values_, static_cast<std::size_t>(capacity_));
        std::free(links_);
    }

    [[noreturn, gnu::noinline]] static void failFull() {
        throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
    }

    BindingIndex size() const { return size_; }
    Variable& value(BindingIndex place) { return values_[place]; }
    const Variable& value(BindingIndex place) const { return values_[place]; }
    BindingLink& link(BindingIndex place) { return links_[place]; }
    const BindingLink& link(BindingIndex place) const { return links_[place]; }
    std::span<const Variable> from(BindingIndex place) const {
        return {values_ + place, static_cast<std::size_t>(size_ - place)};
    }

    // Adds a value without a name.
    [[gnu::always_inline]] Variable& push(Variable&& value) {
        if (size_ == capacity_) [[unlikely]]
            failFull();
        return *std::construct_at(values_ + size_++, std::move(value));
    }
    [[gnu::always_inline]] Variable& push(const Variable& value) { return push(Variable(value)); }
    [[gnu::always_inline]] Variable pop() {
        --size_;
        return std::move(values_[size_]);  // what is moved from holds nothing
    }
    // Drops from the top down to this size; `leave` sees the links of values with a name.
    template <typename Leave>
    [[gnu::always_inline]] void dropTo(BindingIndex size, Leave leave) {
        const BindingIndex top = size_;
        if (top <= size) return;
        size_ = size;
        bool ownsAny = false;
        for (BindingIndex place = top; place-- > size;) {
            BindingLink& link = links_[place];
            if (link.cell) {
                leave(link);
                link.cell = nullptr;
            }
            ownsAny |= values_[place].ownsObject();
        }
        if (ownsAny) destroyValues(size, top);
    }
    // The same of values without a name.
    [[gnu::always_inline]] void drop(BindingIndex count) {
        Variable* value = values_ + size_;
        size_ -= count;
        for (const Variable* const bottom = values_ + size_; value != bottom;) std::destroy_at(--value);
    }
    void swap(BindingStack& other) noexcept {
        std::swap(values_, other.values_);
        std::swap(links_, other.links_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    [[gnu::noinline]] void destroyValues(BindingIndex bottom, BindingIndex top) {
        while (top > bottom) std::destroy_at(values_ + --top);
    }

    Variable* values_;  // constructed below size_
    BindingLink*
        links_;  // without a cell from size_ on; zeroed memory, which costs nothing until it is touched
    BindingIndex size_ = 0;
    BindingIndex capacity_;
};

}  // namespace kelmora
