#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
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
// side by side are a span. What lies above the newest value owns nothing, so that instructions may write
// their result to the next place before it is made part of the stack.
template <typename Link>
class BindingStack {
public:
    static constexpr BindingIndex fullCapacity = 1 << 17;

    BindingStack() : BindingStack(fullCapacity) {}
    explicit BindingStack(BindingIndex capacity)
        : values_(zeroed<Variable>(capacity + 1)),
          links_(zeroed<Link>(capacity)),
          limit_(values_ + capacity) {
        next_.value = values_;
    }
    BindingStack(BindingStack&& other) noexcept
        : values_(std::exchange(other.values_, nullptr)),
          links_(std::exchange(other.links_, nullptr)),
          limit_(std::exchange(other.limit_, nullptr)) {
        next_.value = std::exchange(other.next_.value, nullptr);
    }
    BindingStack& operator=(BindingStack&& other) noexcept {
        swap(other);
        return *this;
    }
    ~BindingStack() {
        dropTo(values_, [](const Link&) {});
        std::free(values_);
        std::free(links_);
    }

    BindingIndex size() const { return placeOf(top()); }
    BindingIndex placeOf(const Variable* value) const { return static_cast<BindingIndex>(value - values_); }
    Variable& value(BindingIndex place) { return values_[place]; }
    const Variable& value(BindingIndex place) const { return values_[place]; }
    Link& link(BindingIndex place) { return links_[place]; }
    const Link& link(BindingIndex place) const { return links_[place]; }
    Link& linkOf(const Variable* value) { return links_[value - values_]; }
    // Behind the newest value.
    Variable* top() const { return next_.value; }
    Place& next() { return next_; }
    // The value that was written to the next place becomes the newest one; and back.
    [[gnu::always_inline]] void keep() {
        if (next_.value == limit_) [[unlikely]]
            failStackFull();
        ++next_.value;
    }
    void retake() { --next_.value; }
    // Nothing that was written there is wanted.
    void clearNext() { *next_.value = Variable(); }

    // Adds a value without a name.
    [[gnu::always_inline]] Variable& push(Variable&& value) {
        if (next_.value == limit_) [[unlikely]]
            failStackFull();
        return *std::construct_at(next_.value++, std::move(value));
    }
    [[gnu::always_inline]] Variable& push(const Variable& value) { return push(Variable(value)); }
    [[gnu::always_inline]] void pushInteger(std::int32_t value) {
        if (next_.value == limit_) [[unlikely]]
            failStackFull();
        ::new (static_cast<void*>(next_.value++)) Variable(Variable::integer(value));
    }
    [[gnu::always_inline]] Variable pop() {
        return std::move(*--next_.value);  // what is moved from holds nothing
    }
    // Drops from the top down to this value; `leave` sees the links of values with a name.
    template <typename Leave>
    [[gnu::always_inline]] void dropTo(Variable* bottom, Leave leave) {
        Variable* value = next_.value;
        if (value <= bottom) return;
        next_.value = bottom;
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
        for (Variable* value = std::exchange(next_.value, bottom); value != bottom;)
            if ((--value)->ownsObject()) *value = Variable();
    }
    void drop(std::size_t count) { dropTo(top() - count); }
    void swap(BindingStack& other) noexcept {
        std::swap(values_, other.values_);
        std::swap(links_, other.links_);
        std::swap(next_.value, other.next_.value);
        std::swap(limit_, other.limit_);
    }

private:
    // Goes on from a value whose name is gone.
    template <typename Leave>
    [[gnu::noinline]] static void destroyTo(Variable* value, const Variable* bottom, Link* link,
                                            Leave leave) {
        for (;;) {
            *value = Variable();
            if (value == bottom) return;
            --value;
            --link;
            if (!link->cell) continue;
            leave(*link);
            link->cell = nullptr;
        }
    }

    // Memory from the system, all of whose bytes are zero, costs nothing until it is touched.
    template <typename T>
    static T* zeroed(BindingIndex count) {
        if (void* const memory = std::calloc(static_cast<std::size_t>(count), sizeof(T)))
            return static_cast<T*>(memory);
        throw std::bad_alloc();
    }

    Variable* values_;  // all zero is nil
    Link* links_;       // without a cell from the next place on
    Place next_;
    const Variable* limit_;
};

}  // namespace kelmora
