#include <limits>

#include "base/byte_writer.h"
#include "codec/bgra_rows.h"
#include "codec/pixel_limit.h"
#include "codec/png.h"

namespace vh::png {
namespace {

constexpr std::uint32_t fileHeaderSize = 14;
constexpr std::uint32_t infoHeaderSize = 108;
constexpr std::uint32_t dataOffset = fileHeaderSize + infoHeaderSize;
constexpr std::uint32_t pixelsPerMetre = 2835;
constexpr std::uint32_t bitFields = 3;

std::vector<unsigned char> bmp_header(std::uint32_t width, std::uint32_t height, std::uint32_t size) {
    kelmora::ByteWriter out;
    out.text("BM");
    out.u32(dataOffset + size);
    out.u32(0);
    out.u32(dataOffset);
    out.u32(infoHeaderSize);
    out.u32(width);
    out.u32(height);
    out.u16(1);
    out.u16(32);
    out.u32(bitFields);
    out.u32(size);
    out.u32(pixelsPerMetre);
    out.u32(pixelsPerMetre);
    out.u32(0);
    out.u32(0);
    for (const std::uint32_t mask : {0xFF0000u, 0xFF00u, 0xFFu, 0xFF000000u}) out.u32(mask);
    out.text("BGRs");
    while (out.size() < dataOffset) out.u8(0);
    return out.take();
}

}  // namespace

bool save_bmp_rgba8_file(const char* path, const unsigned char* pixels, int width, int height) {
    if (path == nullptr || pixels == nullptr || width < 1 || height < 1) return false;
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    const std::uint64_t size = std::uint64_t{columns} * rows * rgbaSize;
    if (!within_pixel_limit(columns, rows) || dataOffset + size > std::numeric_limits<std::uint32_t>::max())
        return false;
    OutputFile file(path);
    if (!file.is_open()) return false;
    file.write(bmp_header(columns, rows, static_cast<std::uint32_t>(size)));
    const std::size_t row_size = std::size_t{columns} * rgbaSize;
    BgraRows out(file, row_size);
    // From the bottom, as every reader knows it.
    for (std::size_t y = rows; y > 0; --y) out.add(pixels + (y - 1) * row_size);
    out.flush();
    return file.close();
}

}  // namespace vh::png
