#include <benchmark/benchmark.h>
#include <png.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "codec/png.h"

// Decodes pictures of three kinds with our reader and with libpng, in turns, and reports each one's time and
// the ratio of the medians. Both give the same RGBA bytes into fresh memory, from a file in memory.
namespace {

using Bytes = std::vector<unsigned char>;

constexpr int side = 2048;
constexpr int repetitions = 9;

// Smooth noise: random values on a grid of `cell` pixels, blended between.
class SmoothNoise {
public:
    SmoothNoise(unsigned seed, int cell) : cell_(cell), columns_(side / cell + 2) {
        std::mt19937 random(seed);
        grid_.resize(static_cast<std::size_t>(columns_ * columns_));
        for (float& value : grid_) value = static_cast<float>(random() % 1000) / 1000.0f;
    }
    float at(int x, int y) const {
        const float across = ease(static_cast<float>(x % cell_) / static_cast<float>(cell_));
        const float down = ease(static_cast<float>(y % cell_) / static_cast<float>(cell_));
        const auto value = [&](int column, int row) {
            return grid_[static_cast<std::size_t>((y / cell_ + row) * columns_ + x / cell_ + column)];
        };
        const float top = value(0, 0) + across * (value(1, 0) - value(0, 0));
        const float bottom = value(0, 1) + across * (value(1, 1) - value(0, 1));
        return top + down * (bottom - top);
    }

private:
    static float ease(float t) { return t * t * (3 - 2 * t); }
    int cell_;
    int columns_;
    std::vector<float> grid_;
};

unsigned char to_byte(float value) {
    return static_cast<unsigned char>(std::clamp(value, 0.0f, 255.0f));
}

// Soft shapes in several sizes, with a sensor's grain; opaque.
Bytes photo_like(int channels) {
    const SmoothNoise coarse(1, 256), middle(2, 64), fine(3, 16), tint(4, 128);
    std::mt19937 grain(5);
    Bytes pixels;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const float light = 150 * coarse.at(x, y) + 70 * middle.at(x, y) + 30 * fine.at(x, y);
            for (int channel = 0; channel < 3; ++channel) {
                const float noise = static_cast<float>(grain() % 9) - 4;
                pixels.push_back(to_byte(light + 30 * static_cast<float>(channel) * tint.at(x, y) + noise));
            }
            if (channels == 4) pixels.push_back(255);
        }
    }
    return pixels;
}

// Sheets of shaded figures with soft edges on clear ground.
Bytes sprite_like(int) {
    const SmoothNoise shade(6, 32);
    Bytes pixels;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int cell = (y / 128) * 16 + x / 128;
            const float dx = static_cast<float>(x % 128 - 64), dy = static_cast<float>(y % 128 - 64);
            const float radius = 30 + static_cast<float>(cell * 7 % 28) +
                                 6 * std::sin(5 * std::atan2(dy, dx) + static_cast<float>(cell));
            const float cover = std::clamp(radius - std::sqrt(dx * dx + dy * dy), 0.0f, 1.0f);
            const float light = std::floor(8 * shade.at(x, y)) / 8;
            const float hue = static_cast<float>(cell * 53 % 200);
            const auto level = [&](float base) { return cover > 0 ? to_byte(base * (0.5f + light / 2)) : 0; };
            pixels.push_back(static_cast<unsigned char>(level(hue + 55)));
            pixels.push_back(static_cast<unsigned char>(level(255 - hue)));
            pixels.push_back(static_cast<unsigned char>(level(120)));
            pixels.push_back(to_byte(255 * cover));
        }
    }
    return pixels;
}

// Flat colours with dark outlines and a few gradients, as a painted background has them.
Bytes drawn(int channels) {
    const SmoothNoise region(7, 128), wash(8, 512);
    Bytes pixels;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const float height = 12 * region.at(x, y);
            const int band = static_cast<int>(height);
            const bool outline = height - static_cast<float>(band) < 0.06f;
            const float gradient = band % 3 == 0 ? 60 * wash.at(x, y) : 0;
            const float base = outline ? 20 : static_cast<float>(80 + band * 67 % 120);
            pixels.push_back(to_byte(base + gradient));
            pixels.push_back(to_byte(outline ? 18 : static_cast<float>(60 + band * 41 % 150) + gradient));
            pixels.push_back(to_byte(outline ? 30 : static_cast<float>(90 + band * 23 % 130)));
            if (channels == 4) pixels.push_back(255);
        }
    }
    return pixels;
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "png_bench: %s\n", what);
    std::exit(1);
}

void append_to(png_structp png, png_bytep data, png_size_t size) {
    auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
    file.insert(file.end(), data, data + size);
}

Bytes encode(const Bytes& pixels, int channels, bool interlaced) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, append_to, nullptr);
    png_set_IHDR(png, info, side, side, 8, channels == 4 ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < side; ++y)
        rows.push_back(const_cast<png_bytep>(pixels.data()) + y * side * static_cast<std::size_t>(channels));
    png_set_rows(png, info, rows.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

struct MemoryFile {
    const Bytes& bytes;
    std::size_t position = 0;
};

void read_from(png_structp png, png_bytep data, png_size_t size) {
    auto& file = *static_cast<MemoryFile*>(png_get_io_ptr(png));
    if (size > file.bytes.size() - file.position) png_error(png, "end of file");
    std::copy_n(file.bytes.data() + file.position, size, data);
    file.position += size;
}

kelmora::ByteBuffer decode_with_libpng(const Bytes& bytes) {
    MemoryFile file{bytes};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &file, read_from);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const std::size_t row_bytes = png_get_rowbytes(png, info);
    const std::size_t height = png_get_image_height(png, info);
    kelmora::ByteBuffer pixels(row_bytes * height);
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < height; ++y) rows.push_back(pixels.data() + y * row_bytes);
    png_read_image(png, rows.data());
    png_read_end(png, info);
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}

kelmora::ByteBuffer decode_with_ours(const Bytes& bytes) {
    vh::png::Image image;
    if (!vh::png::load_memory(bytes.data(), static_cast<unsigned>(bytes.size()), image))
        fail("cannot decode");
    return std::move(image.pixels);
}

double seconds_of(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Totals {
    double log_sum = 0;
    int count = 0;
} totals;

// One iteration is one round: both decoders in turns, `repetitions` times.
void compare(benchmark::State& state, const Bytes& file) {
    if (decode_with_ours(file) != decode_with_libpng(file)) fail("pixels differ from libpng's");
    double ours = 0, peer = 0;
    for (auto _ : state) {
        std::vector<double> our_times, peer_times;
        for (int i = 0; i < repetitions; ++i) {
            our_times.push_back(seconds_of([&] { benchmark::DoNotOptimize(decode_with_ours(file)); }));
            peer_times.push_back(seconds_of([&] { benchmark::DoNotOptimize(decode_with_libpng(file)); }));
        }
        ours = median(our_times);
        peer = median(peer_times);
    }
    state.counters["file_KB"] = static_cast<double>(file.size()) / 1024;
    state.counters["ours_ms"] = 1000 * ours;
    state.counters["libpng_ms"] = 1000 * peer;
    state.counters["ours_MBps"] = side * side * 4 / ours / 1e6;
    state.counters["ratio"] = peer / ours;
    totals.log_sum += std::log(peer / ours);
    ++totals.count;
}

void add(const std::string& name, Bytes (*paint)(int), int channels, bool interlaced) {
    const Bytes file = encode(paint(channels), channels, interlaced);
    benchmark::RegisterBenchmark(name.c_str(), [file](benchmark::State& state) { compare(state, file); })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    add("photo_rgba", photo_like, 4, false);
    add("photo_rgb", photo_like, 3, false);
    add("sprite_rgba", sprite_like, 4, false);
    add("drawn_rgba", drawn, 4, false);
    add("drawn_rgb", drawn, 3, false);
    add("photo_rgb_adam7", photo_like, 3, true);
    benchmark::RunSpecifiedBenchmarks();
    if (totals.count > 0)
        std::printf("geometric mean of the ratios: %.2f\n", std::exp(totals.log_sum / totals.count));
    benchmark::Shutdown();
    return 0;
}
