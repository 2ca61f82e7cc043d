#pragma once

#include <bit>
#include <cstdint>
#include <vector>

namespace kelmora {

// The pixels of a picture that nothing has covered yet; all of them at first. Callers stay inside it.
class OpenPixels {
public:
    OpenPixels(std::int32_t width, std::int32_t height)
        : wordsPerRow_((static_cast<std::size_t>(width) + 63) / 64),
          closed_(wordsPerRow_ * static_cast<std::size_t>(height)),
          openInRow_(static_cast<std::size_t>(height), width),
          openRows_(height) {}

    bool isAnyOpen() const { return openRows_ > 0; }
    bool isAnyOpen(std::int32_t y) const { return openInRow_[static_cast<std::size_t>(y)] > 0; }
    bool isOpen(std::int32_t x, std::int32_t y) const {
        return (row(y)[static_cast<std::size_t>(x) / 64] >> (static_cast<std::uint32_t>(x) % 64) & 1) == 0;
    }

    // Calls `visit` with the parts of the pixels from `first` to before `end` that are open.
    template <typename Visit>
    void forEachOpen(std::int32_t y, std::int32_t first, std::int32_t end, const Visit& visit) const {
        forEachWord(y, first, end, [&](std::size_t word, std::uint64_t mask) {
            forEachRun(word, mask & ~closed_[word], visit, y);
        });
    }
    // The same, and closes them.
    template <typename Visit>
    void close(std::int32_t y, std::int32_t first, std::int32_t end, const Visit& visit) {
        if (!isAnyOpen(y)) return;
        std::int32_t count = 0;
        forEachWord(y, first, end, [&](std::size_t word, std::uint64_t mask) {
            const std::uint64_t open = mask & ~closed_[word];
            closed_[word] |= mask;
            count += forEachRun(word, open, visit, y);
        });
        std::int32_t& left = openInRow_[static_cast<std::size_t>(y)];
        left -= count;
        if (count > 0 && left == 0) --openRows_;
    }
    void close(std::int32_t x, std::int32_t y) {
        close(y, x, x + 1, [](std::int32_t, std::int32_t) {});
    }

private:
    const std::uint64_t* row(std::int32_t y) const {
        return &closed_[static_cast<std::size_t>(y) * wordsPerRow_];
    }
    template <typename Visit>
    void forEachWord(std::int32_t y, std::int32_t first, std::int32_t end, const Visit& visit) const {
        if (first >= end) return;
        constexpr std::uint64_t all = ~std::uint64_t{0};
        const auto begin = static_cast<std::uint32_t>(first);
        const auto last = static_cast<std::uint32_t>(end - 1);
        const std::size_t start = static_cast<std::size_t>(y) * wordsPerRow_;
        for (std::size_t word = begin / 64; word <= last / 64; ++word) {
            std::uint64_t mask = all;
            if (word == begin / 64) mask &= all << (begin % 64);
            if (word == last / 64) mask &= all >> (63 - last % 64);
            visit(start + word, mask);
        }
    }
    // The count of the pixels.
    template <typename Visit>
    std::int32_t forEachRun(std::size_t word, std::uint64_t open, const Visit& visit, std::int32_t y) const {
        const auto x = static_cast<std::int32_t>((word - static_cast<std::size_t>(y) * wordsPerRow_) * 64);
        std::int32_t count = 0;
        while (open != 0) {
            const int start = std::countr_zero(open);
            const int length = std::countr_one(open >> start);
            visit(x + start, x + start + length);
            count += length;
            open &= open + (std::uint64_t{1} << start);
        }
        return count;
    }

    std::size_t wordsPerRow_;
    std::vector<std::uint64_t> closed_;
    std::vector<std::int32_t> openInRow_;
    std::int32_t openRows_;
};

}  // namespace kelmora
