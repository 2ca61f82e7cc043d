#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "script/variable.h"

namespace kelmora {

// The arguments of one call. Up to eight need no allocation.
class ArgumentList {
public:
    void push(Variable value) {
        if (count_ < inline_.size()) {
            inline_[count_] = std::move(value);
        } else {
            if (overflow_.empty()) overflow_.assign(inline_.begin(), inline_.end());
            overflow_.push_back(std::move(value));
        }
        ++count_;
    }
    std::span<const Variable> span() const {
        if (count_ > inline_.size()) return overflow_;
        return {inline_.data(), count_};
    }

private:
    std::array<Variable, 8> inline_;
    std::vector<Variable> overflow_;
    std::size_t count_ = 0;
};

}  // namespace kelmora
