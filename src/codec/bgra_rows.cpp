#include "codec/bgra_rows.h"

#include <algorithm>

#include "codec/pixel_limit.h"
#include "codec/swap_red_blue.h"

namespace vh::png {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18;  // what stays in the cache

}  // namespace

BgraRows::BgraRows(OutputFile& file, std::size_t row_size)
    : file_(file), row_size_(row_size), block_(blockSize) {}

void BgraRows::add(const unsigned char* row) {
    for (std::size_t left = row_size_; left > 0;) {
        const std::size_t count = std::min(left, block_.size() - filled_);
        swap_red_blue(row, count / rgbaSize, block_.data() + filled_);
        filled_ += count;
        row += count;
        left -= count;
        if (filled_ == block_.size()) flush();
    }
}

void BgraRows::flush() {
    file_.write(std::span(block_).first(filled_));
    filled_ = 0;
}

}  // namespace vh::png
