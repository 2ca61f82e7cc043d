#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kelmora {

// Scales opaque pictures by mixing the four nearest pixels of each point. Positions are held in 256ths of a
// pixel and each direction is rounded to whole channels, with the same bytes on every system.
class SmoothScaler {
public:
    // For each new picture. All sizes at least 1.
    void prepare(int imageWidth, int imageHeight, int drawnWidth, int drawnHeight);

    // The two rows of the picture that a drawn row lies between, and how much of the lower one it is in
    // 256ths.
    struct Between {
        int upper = 0;
        int lower = 0;
        std::uint32_t part = 0;
    };
    Between rowsAt(int drawnRow) const;

    // Whether the row is at hand in drawn width; else it has to be brought before it is mixed. The last two
    // rows that were brought stay.
    bool holds(int imageRow) const { return rows_[imageRow & 1] == imageRow; }
    void bring(int imageRow, std::span<const std::uint32_t> pixels);
    // Both rows are at hand. `row` has the drawn width.
    void mix(const Between& between, std::uint32_t* row) const;

private:
    struct Column {
        int left = 0;
        std::uint32_t weights = 0;  // of the left pixel, 0 to 256, and of the right one in the upper half
    };

    int imageWidth_ = 0;
    int imageHeight_ = 0;
    int drawnHeight_ = 0;
    std::vector<Column> columns_;
    std::vector<std::uint32_t> widened_[2];  // rows of even and of odd number
    int rows_[2] = {-1, -1};
    std::vector<std::uint32_t> padded_;
};

}  // namespace kelmora
