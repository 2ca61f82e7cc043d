#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "codec/adler32.h"
#include "codec/crc32.h"
#include "codec/load_store.h"
#include "codec/output_file.h"
#include "codec/png.h"
#include "codec/png_filter.h"
#include "codec/png_header.h"

namespace vh::png {
namespace {

using ByteSpan = std::span<const unsigned char>;

constexpr std::size_t largestStoredBlock = 65535;
constexpr std::size_t largestIdat = 262144;

void write_chunk(OutputFile& file, const char (&type)[5], ByteSpan data) {
    std::array<unsigned char, 8> head{};
    store_u32_big(head.data(), static_cast<std::uint32_t>(data.size()));
    std::copy_n(type, 4, head.begin() + 4);
    std::array<unsigned char, 4> tail{};
    store_u32_big(tail.data(), crc32(data, crc32(ByteSpan(head).subspan(4))));
    file.write(head);
    file.write(data);
    file.write(tail);
}

// Gathers bytes and writes an IDAT chunk whenever one is full.
class IdatStream {
public:
    explicit IdatStream(OutputFile& file) : file_(file) { pending_.reserve(largestIdat); }

    void add(ByteSpan bytes) {
        while (!bytes.empty()) {
            const std::size_t count = std::min(bytes.size(), largestIdat - pending_.size());
            pending_.insert(pending_.end(), bytes.begin(),
                            bytes.begin() + static_cast<std::ptrdiff_t>(count));
            bytes = bytes.subspan(count);
            if (pending_.size() == largestIdat) flush();
        }
    }
    void flush() {
        if (!pending_.empty()) write_chunk(file_, "IDAT", pending_);
        pending_.clear();
    }

private:
    OutputFile& file_;
    std::vector<unsigned char> pending_;
};

// A zlib stream of stored blocks. A full block waits for what follows it, since the last one is marked.
class StoredStream {
public:
    explicit StoredStream(IdatStream& out) : out_(out) {
        block_.reserve(largestStoredBlock);
        out_.add(std::array<unsigned char, 2>{0x78, 0x01});
    }

    void add(ByteSpan bytes) {
        adler_ = adler32(bytes, adler_);
        while (!bytes.empty()) {
            if (block_.size() == largestStoredBlock) put_block(false);
            const std::size_t count = std::min(bytes.size(), largestStoredBlock - block_.size());
            block_.insert(block_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
            bytes = bytes.subspan(count);
        }
    }
    void finish() {
        put_block(true);
        std::array<unsigned char, 4> trailer{};
        store_u32_big(trailer.data(), adler_);
        out_.add(trailer);
        out_.flush();
    }

private:
    void put_block(bool last) {
        const auto size = static_cast<std::uint16_t>(block_.size());
        const auto low = static_cast<unsigned char>(size & 0xFF);
        const auto high = static_cast<unsigned char>(size >> 8);
        const auto inverted = [](unsigned char byte) { return static_cast<unsigned char>(~byte); };
        const unsigned char final_bit = last ? 1 : 0;
        out_.add(std::array<unsigned char, 5>{final_bit, low, high, inverted(low), inverted(high)});
        out_.add(block_);
        block_.clear();
    }

    IdatStream& out_;
    std::vector<unsigned char> block_;
    std::uint32_t adler_ = 1;
};

void write_header(OutputFile& file, std::uint32_t width, std::uint32_t height) {
    file.write(std::array<unsigned char, 8>{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'});
    std::array<unsigned char, 13> header{};
    store_u32_big(header.data(), width);
    store_u32_big(header.data() + 4, height);
    header[8] = 8;
    header[9] = Rgba;
    write_chunk(file, "IHDR", header);
}

void write_pixels(OutputFile& file, const unsigned char* pixels, std::size_t row_bytes, std::size_t rows) {
    IdatStream idat(file);
    StoredStream stream(idat);
    RowFilterer filterer(row_bytes);
    const unsigned char* prior = nullptr;
    for (std::size_t y = 0; y < rows; ++y) {
        const unsigned char* row = pixels + y * row_bytes;
        stream.add(filterer.filter(row, prior));
        prior = row;
    }
    stream.finish();
}

}  // namespace

bool save_png_rgba8_file(const char* path, const unsigned char* pixels, int width, int height) {
    if (path == nullptr || pixels == nullptr || width < 1 || height < 1) return false;
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    if (!within_pixel_limit(columns, rows)) return false;
    const std::uint64_t row_bytes = std::uint64_t{columns} * rgbaSize;
    if (row_bytes > std::numeric_limits<std::uint32_t>::max()) return false;
    OutputFile file(path);
    if (!file.is_open()) return false;
    write_header(file, columns, rows);
    write_pixels(file, pixels, static_cast<std::size_t>(row_bytes), rows);
    write_chunk(file, "IEND", {});
    return file.close();
}

bool save_rgba8_file(const char* path, const unsigned char* pixels, int width, int height) {
    return save_png_rgba8_file(path, pixels, width, height);
}

}  // namespace vh::png
