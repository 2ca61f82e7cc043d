#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include "script/variable.h"

namespace kelmora {

// The arguments of one call. Up to eight need no allocation, and only those that are there are made.
class ArgumentList {
public:
    ArgumentList() = default;
    ArgumentList(const ArgumentList&) = delete;
    ArgumentList& operator=(const ArgumentList&) = delete;
    ~ArgumentList() { std::destroy_n(inlineItems(), inlineCount_); }

    void push(Variable value) {
        emplace([&] { return std::move(value); });
    }
    // Adds what `make` returns, without moving it where there is room.
    template <typename Make>
    void emplace(Make&& make) {
        if (inlineCount_ < inlineCapacity) {
            new (inlineItems() + inlineCount_) Variable(make());
            ++inlineCount_;
        } else {
            overflow(make());
        }
    }
    std::span<const Variable> span() const {
        if (!overflow_.empty()) return overflow_;
        return {std::launder(reinterpret_cast<const Variable*>(storage_)), inlineCount_};
    }

private:
    static constexpr std::size_t inlineCapacity = 8;

    [[gnu::noinline]] void overflow(Variable value) {
        if (overflow_.empty()) {
            overflow_.assign(std::make_move_iterator(inlineItems()),
                             std::make_move_iterator(inlineItems() + inlineCount_));
        }
        overflow_.push_back(std::move(value));
    }

    Variable* inlineItems() { return std::launder(reinterpret_cast<Variable*>(storage_)); }

    alignas(Variable) std::byte storage_[inlineCapacity * sizeof(Variable)];
    std::size_t inlineCount_ = 0;
    std::vector<Variable> overflow_;
};

}  // namespace kelmora
