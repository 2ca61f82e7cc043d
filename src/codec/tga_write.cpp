#include "base/byte_writer.h"
#include "codec/bgra_rows.h"
#include "codec/pixel_limit.h"
#include "codec/png.h"

namespace vh::png {
namespace {

constexpr std::uint8_t trueColour = 2;
constexpr std::uint8_t eightAlphaBitsTopLeft = 0x28;
constexpr int largestSide = 65535;

std::vector<unsigned char> tga_header(std::uint16_t width, std::uint16_t height) {
    kelmora::ByteWriter out;
    out.u16(0);
    out.u8(trueColour);
    out.u8(0);
    out.u64(0);
    out.u16(width);
    out.u16(height);
    out.u8(32);
    out.u8(eightAlphaBitsTopLeft);
    return out.take();
}

}  // namespace

bool save_tga_rgba8_file(const char* path, const unsigned char* pixels, int width, int height) {
    if (path == nullptr || pixels == nullptr || width < 1 || height < 1) return false;
    if (width > largestSide || height > largestSide) return false;
    const auto columns = static_cast<std::uint16_t>(width);
    const auto rows = static_cast<std::uint16_t>(height);
    if (!within_pixel_limit(columns, rows)) return false;
    OutputFile file(path);
    if (!file.is_open()) return false;
    file.write(tga_header(columns, rows));
    const std::size_t row_size = std::size_t{columns} * rgbaSize;
    BgraRows out(file, row_size);
    for (std::size_t y = 0; y < rows; ++y) out.add(pixels + y * row_size);
    out.flush();
    return file.close();
}

}  // namespace vh::png
