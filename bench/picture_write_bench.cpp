#include <png.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <vector>

#include "codec/png.h"

// Writes a picture in each format beside a peer that does the least there is to do: for BMP and TGA a copy of
// the pixels and one write of it, for PNG libpng at level 0 with the filter of the smallest sum. In turns,
// into the file that is named (/dev/shm by default), and reports medians and their ratio. What was written is
// read back and compared first.
namespace {

using Bytes = std::vector<unsigned char>;
constexpr int side = 2048;
constexpr int repetitions = 11;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "picture_write_bench: %s\n", what);
    std::exit(1);
}

// Ramps with grain, some of it clear.
Bytes paint() {
    std::mt19937 random(1);
    Bytes pixels;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            for (const int base : {x / 9, y / 11, (x + y) / 17, x % 300 < 200 ? 255 : y / 8})
                pixels.push_back(
                    static_cast<unsigned char>(std::clamp(base + static_cast<int>(random() % 5), 0, 255)));
        }
    }
    return pixels;
}

bool copy_and_write(const char* path, const Bytes& pixels) {
    Bytes copy(pixels);
    std::FILE* file = std::fopen(path, "wb");
    if (!file) return false;
    const bool written = std::fwrite(copy.data(), 1, copy.size(), file) == copy.size();
    return std::fclose(file) == 0 && written;
}

bool write_with_libpng(const char* path, const Bytes& pixels) {
    std::FILE* file = std::fopen(path, "wb");
    if (!file) return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_compression_level(png, 0);
    png_set_filter(png, 0, PNG_ALL_FILTERS);
    png_set_IHDR(png, info, side, side, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (std::size_t y = 0; y < side; ++y) png_write_row(png, pixels.data() + y * side * 4);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return std::fclose(file) == 0;
}

double seconds_of(const std::function<bool()>& work) {
    const auto start = std::chrono::steady_clock::now();
    if (!work()) fail("cannot write");
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "/dev/shm/kelmora_picture_write_bench";
    const Bytes pixels = paint();
    using Save = bool (*)(const char*, const unsigned char*, int, int);
    const struct {
        const char* name;
        Save save;
        bool (*peer)(const char*, const Bytes&);
    } rows[] = {{"bmp", vh::png::save_bmp_rgba8_file, copy_and_write},
                {"tga", vh::png::save_tga_rgba8_file, copy_and_write},
                {"xcf", vh::png::save_xcf_rgba8_file, copy_and_write},
                {"png", vh::png::save_png_rgba8_file, write_with_libpng}};
    for (const auto& row : rows) {
        vh::png::Image image;
        if (!row.save(path, pixels.data(), side, side) || !vh::png::load_file(path, image))
            fail("cannot write");
        if (!std::equal(pixels.begin(), pixels.end(), image.pixels.begin(), image.pixels.end()))
            fail("other pixels");
        std::vector<double> ours, theirs;
        for (int i = 0; i < repetitions; ++i) {
            ours.push_back(seconds_of([&] { return row.save(path, pixels.data(), side, side); }));
            theirs.push_back(seconds_of([&] { return row.peer(path, pixels); }));
        }
        std::printf("%s ours %.2f ms, peer %.2f ms, peer / ours %.2f\n", row.name, 1000 * median(ours),
                    1000 * median(theirs), median(theirs) / median(ours));
    }
    std::remove(path);
    return 0;
}
