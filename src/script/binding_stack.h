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
};
struct LocalLink : BindingLink {
    BindingIndex shadowed;  // the local of the same name before it
};

[[noreturn, gnu::noinline]] inline void failStackFull() {
    throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
}

// Stack of bound values that never move: pointers to them hold until they are dropped, and those that stand
// side by side are a span.
template <typename Link>
class BindingStack {
public:
    static constexpr BindingIndex fullCapacity = 1 << 17;

    BindingStack() : BindingStack(fullCapacity) {}
    explicit BindingStack(BindingIndex capacity)
        : values_(std::allocator<Variable>().allocate(static_cast<std::size_t>(capacity))),
          links_(static_cast<Link*>(std::calloc(static_cast<std::size_t>(capacity), sizeof(Link)))),
          top_(values_),
          limit_(values_ + capacity) {
        if (!links_) throw std::bad_alloc();
    }
    BindingStack(BindingStack&& other) noexcept
        : values_(std::exchange(other.values_, nullptr)),
          links_(std::exchange(other.links_, nullptr)),
          top_(std::exchange(other.top_, nullptr)),
          limit_(std::exchange(other.limit_, nullptr)) {}
    BindingStack& operator=(BindingStack&& other) noexcept {
        swap(other);
        return *this;
    }
    ~BindingStack() {
        dropTo(values_, [](const Link&) {});
        if (!values_) return;
        std::allocator<Variable>().deallocate(values_, static_cast<std::size_t>(limit_ - values_));
        std::free(links_);
    }

    BindingIndex size() const { return placeOf(top_); }
    BindingIndex placeOf(const Variable* value) const { return static_cast<BindingIndex>(value - values_); }
    Variable& value(BindingIndex place) { return values_[place]; }
    const Variable& value(BindingIndex place) const { return values_[place]; }
    Link& link(BindingIndex place) { return links_[place]; }
    const Link& link(BindingIndex place) const { return links_[place]; }
    Link& linkOf(const Variable* value) { return links_[value - values_]; }
    // Behind the newest value.
    Variable* top() const { return top_; }
    // The newest values.
    std::span<const Variable> newest(std::size_t count) const { return {top_ - count, count}; }

    // Adds a value without a name.
    [[gnu::always_inline]] Variable& push(Variable&& value) {
        if (top_ == limit_) [[unlikely]]
            failStackFull();
        return *std::construct_at(top_++, std::move(value));
    }
    [[gnu::always_inline]] Variable& push(const Variable& value) { return push(Variable(value)); }
    [[gnu::always_inline]] Variable pop() {
        return std::move(*--top_);  // what is moved from holds nothing
    }
    // Drops from the top down to this value; `leave` sees the links of values with a name.
    template <typename Leave>
    [[gnu::always_inline]] void dropTo(Variable* bottom, Leave leave) {
        Variable* value = top_;
        if (value <= bottom) return;
        top_ = bottom;
        Link* link = &linkOf(value);
        do {
            --value;
            --link;
            if (link->cell) {
                leave(*link);
                link->cell = nullptr;
            }
            if (value->ownsObject()) [[unlikely]]
                return destroyTo(value, bottom, link, leave);
        } while (value != bottom);
    }
    // The same of values without a name.
    [[gnu::always_inline]] void dropTo(Variable* bottom) {
        for (Variable* value = std::exchange(top_, bottom); value != bottom;) std::destroy_at(--value);
    }
    void drop(std::size_t count) { dropTo(top_ - count); }
    void swap(BindingStack& other) noexcept {
        std::swap(values_, other.values_);
        std::swap(links_, other.links_);
        std::swap(top_, other.top_);
        std::swap(limit_, other.limit_);
    }

private:
    // Goes on from a value whose name is gone.
    template <typename Leave>
    [[gnu::noinline]] static void destroyTo(Variable* value, const Variable* bottom, Link* link,
                                            Leave leave) {
        for (;;) {
            std::destroy_at(value);
            if (value == bottom) return;
            --value;
            --link;
            if (!link->cell) continue;
            leave(*link);
            link->cell = nullptr;
        }
    }

    Variable* values_;  // constructed below top_
    Link* links_;       // without a cell from top_ on; zeroed memory, which costs nothing until it is touched
    Variable* top_;
    const Variable* limit_;
};

}  // namespace kelmora
