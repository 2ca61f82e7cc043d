#pragma once

#include <vector>

#include "lua/value.h"

namespace vesper::lua {

// A short list of values; a single one takes no memory of its own.
class MultiValue {
public:
    std::size_t size() const { return count_; }
    Value& operator[](std::size_t index) { return index == 0 ? first_ : rest_[index - 1]; }
    const Value& operator[](std::size_t index) const { return index == 0 ? first_ : rest_[index - 1]; }
    // nil when there is none.
    const Value& first() const { return first_; }

    void push(Value value) {
        if (count_++ == 0) {
            first_ = std::move(value);
        } else {
            rest_.push_back(std::move(value));
        }
    }

private:
    Value first_;
    std::size_t count_ = 0;
    std::vector<Value> rest_;
};

}  // namespace vesper::lua
