#include "codec/png_decode.h"

#include <array>
#include <limits>

#include "codec/png_unfilter.h"

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
            const std::size_t needed = static_cast<std::size_t>(pass().row_bytes) + 1;
            if (bytes.size() - taken < needed) return true;
            if (!take_row(bytes[taken], bytes.data() + taken + 1)) return false;
            taken += needed;
            advance();
        }
        return taken == bytes.size();
    }
    bool finished() const { return pass_ == layout_.pass_count; }

private:
    const Pass& pass() const { return layout_.passes[pass_]; }

    bool take_row(unsigned filter, const unsigned char* raw) {
        const std::size_t y = pass().start_y + std::size_t{row_} * pass().step_y;
        unsigned char* const out = pixels_ + (y * header_.width + pass().start_x) * pixelSize;
        unsigned char* const unfiltered = straight_ ? out : spare_row();
        const auto size = static_cast<std::size_t>(pass().row_bytes);
        if (!unfilter_row_to(filter, unfiltered, raw, prior_, size, layout_.bytes_per_pixel)) return false;
        prior_ = unfiltered;
        if (straight_) return true;
        return expand_row(header_, tables_, unfiltered, pass().columns, out, pass().step_x * pixelSize);
    }

    // The row buffer that does not hold the row above.
    unsigned char* spare_row() {
        kelmora::ByteBuffer& buffer = rows_[row_ % 2];
        if (buffer.size() < pass().row_bytes) buffer.resize(static_cast<std::size_t>(pass().row_bytes));
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
    std::array<kelmora::ByteBuffer, 2> rows_;
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
