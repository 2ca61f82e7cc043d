#include "codec/png_decode.h"

#include <array>
#include <limits>

#include "codec/png_unfilter.h"
#include "codec/row_filter.h"

namespace vh::png {
namespace {

constexpr std::size_t pixelSize = 4;  // of the output

// One sweep over the picture: every `step_x`th pixel of every `step_y`th row.
struct Pass {
    std::uint32_t start_x = 0;
    std::uint32_t start_y = 0;
    std::uint32_t step_x = 1;
    std::uint32_t step_y = 1;
    std::uint32_t columns = 0;
    std::uint32_t rows = 0;
    std::uint64_t row_bytes = 0;  // without the filter byte
};

// The passes that hold pixels, and what they inflate to in all.
struct Layout {
    std::array<Pass, 7> passes{};
    std::size_t pass_count = 0;
    std::uint64_t inflated_size = 0;
    std::size_t bytes_per_pixel = 1;
};

std::uint32_t steps_within(std::uint32_t size, std::uint32_t start, std::uint32_t step) {
    return size <= start ? 0 : (size - start - 1) / step + 1;
}

bool add_pass(const Header& header, Pass pass, Layout& layout) {
    constexpr std::uint64_t limit = std::numeric_limits<std::uint32_t>::max();
    pass.columns = steps_within(header.width, pass.start_x, pass.step_x);
    pass.rows = steps_within(header.height, pass.start_y, pass.step_y);
    if (pass.columns == 0 || pass.rows == 0) return true;
    pass.row_bytes = std::uint64_t{pass.columns} * layout.bytes_per_pixel;
    if (pass.row_bytes > limit) return false;
    layout.inflated_size += pass.rows * (pass.row_bytes + 1);
    layout.passes[layout.pass_count++] = pass;
    return layout.inflated_size <= limit;
}

bool plan_layout(const Header& header, Layout& layout) {
    static constexpr Pass adam7[7] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                      {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    if (!within_pixel_limit(header.width, header.height)) return false;
    layout.bytes_per_pixel = channel_count(header.colour_type) * header.bit_depth / 8;
    if (header.interlace == 0) return add_pass(header, Pass{}, layout);
    for (const Pass& pass : adam7) {
        if (!add_pass(header, pass, layout)) return false;
    }
    return true;
}

// Unfilters and expands rows as they come out of the inflater.
class RowWriter : public InflateSink {
public:
    RowWriter(const Header& header, const Layout& layout, const DecodeTables& tables, unsigned char* pixels)
        : header_(header),
          layout_(layout),
          tables_(tables),
          pixels_(pixels),
          straight_(header.interlace == 0 && header.colour_type == Rgba && header.bit_depth == 8) {}

    bool take(ByteSpan bytes, std::size_t& taken) override {
        taken = 0;
        while (pass_ < layout_.pass_count) {
            const std::size_t available = (bytes.size() - taken) / stride();
            if (available == 0) return true;
            const std::size_t rows = rows_to_take(bytes.data() + taken, available);
            if (!take_rows(bytes.data() + taken, rows)) return false;
            taken += rows * stride();
            for (std::size_t i = 0; i < rows; ++i) advance();
        }
        return taken == bytes.size();
    }
    bool finished() const { return pass_ == layout_.pass_count; }

private:
    const Pass& pass() const { return layout_.passes[pass_]; }
    std::size_t row_bytes() const { return static_cast<std::size_t>(pass().row_bytes); }
    std::size_t stride() const { return row_bytes() + 1; }

    // Two where the next two rows of this pass are a pair that is faster undone together.
    std::size_t rows_to_take(const unsigned char* data, std::size_t available) const {
        const bool pair = available >= 2 && prior_ != nullptr && row_ + 1 < pass().rows &&
                          data[0] == FilterPaeth && data[stride()] == FilterPaeth &&
                          prefers_paeth_pairs(layout_.bytes_per_pixel);
        return pair ? 2 : 1;
    }

    bool take_rows(const unsigned char* data, std::size_t count) {
        unsigned char* const unfiltered[2] = {unfiltered_row(row_), unfiltered_row(row_ + count - 1)};
        const unsigned char* const raw[2] = {data + 1, data + stride() + 1};
        if (count == 2) {
            unfilter_paeth_pair(unfiltered, raw, prior_, row_bytes(), layout_.bytes_per_pixel);
        } else if (!unfilter_row_to(data[0], unfiltered[0], raw[0], prior_, row_bytes(),
                                    layout_.bytes_per_pixel)) {
            return false;
        }
        prior_ = unfiltered[count - 1];
        return straight_ || (expand(unfiltered[0], row_) && (count == 1 || expand(unfiltered[1], row_ + 1)));
    }

    unsigned char* place_of(std::size_t row) const {
        const std::size_t y = pass().start_y + row * pass().step_y;
        return pixels_ + (y * header_.width + pass().start_x) * pixelSize;
    }
    bool expand(const unsigned char* unfiltered, std::size_t row) const {
        return expand_row(header_, tables_, unfiltered, pass().columns, place_of(row),
                          pass().step_x * pixelSize);
    }

    // Where a row goes once unfiltered: one of three buffers in turn, so that a pair leaves the row above
    // alone.
    unsigned char* unfiltered_row(std::size_t row) {
        if (straight_) return place_of(row);
        kelmora::ByteBuffer& buffer = rows_[row % rows_.size()];
        if (buffer.size() < row_bytes()) buffer.resize(row_bytes());
        return buffer.data();
    }

    void advance() {
        if (++row_ < pass().rows) return;
        ++pass_;
        row_ = 0;
        prior_ = nullptr;
    }

    const Header& header_;
    const Layout& layout_;
    const DecodeTables& tables_;
    unsigned char* pixels_;
    bool straight_;  // rows are unfiltered right into the picture
    std::size_t pass_ = 0;
    std::uint32_t row_ = 0;
    const unsigned char* prior_ = nullptr;
    std::array<kelmora::ByteBuffer, 3> rows_;
};

std::uint64_t total_size(std::span<const ByteSpan> spans) {
    std::uint64_t total = 0;
    for (const ByteSpan span : spans) total += span.size();
    return total;
}

}  // namespace

bool decode_png_frame(const Header& header, std::span<const ByteSpan> spans, const DecodeTables& tables,
                      kelmora::ByteBuffer& output) {
    Layout layout;
    if (!plan_layout(header, layout)) return false;
    // Nothing is allocated by the header's word alone: the data must be able to fill the picture.
    if (layout.inflated_size > total_size(spans) * largestExpansion) return false;
    const std::uint64_t output_size = std::uint64_t{header.width} * header.height * pixelSize;
    if (output_size > output.max_size()) return false;
    output.resize(static_cast<std::size_t>(output_size));
    RowWriter writer(header, layout, tables, output.data());
    Inflater inflater;
    return inflater.start(spans, static_cast<std::uint32_t>(layout.inflated_size), writer) &&
           writer.finished();
}

}  // namespace vh::png
