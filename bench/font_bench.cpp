#include <ft2build.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include FT_FREETYPE_H

#include "base/whole_file.h"
#include "font/truetype_backend.h"

// Draws the 95 printable ASCII glyphs at 24 pixels from an open face, with our backend and with FreeType
// without hinting, in turns, and reports each one's best and median time and the ratio of the medians.
namespace {

constexpr const char* defaultFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr int repetitions = 301;
constexpr unsigned pixelSize = 24;

class Peer {
public:
    explicit Peer(const char* path) {
        if (FT_Init_FreeType(&library_) != 0 || FT_New_Face(library_, path, 0, &face_) != 0) std::exit(1);
        FT_Set_Pixel_Sizes(face_, 0, pixelSize);
    }
    ~Peer() {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    unsigned draw(unsigned codepoint) {
        FT_Load_Char(face_, codepoint, FT_LOAD_RENDER | FT_LOAD_NO_HINTING);
        return face_->glyph->bitmap.width;
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

double microseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

struct Times {
    double best() { return *std::min_element(all.begin(), all.end()); }
    double median() {
        std::nth_element(all.begin(), all.begin() + repetitions / 2, all.end());
        return all[repetitions / 2];
    }
    std::vector<double> all;
};

}  // namespace

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : defaultFont;
    const auto bytes = kelmora::readWholeFileBytes(path);
    kelmora::TrueTypeBackend backend;
    if (!bytes || !backend.load(*bytes)) {
        std::fprintf(stderr, "font_bench: cannot load %s\n", path);
        return 1;
    }
    Peer peer(path);
    const double scale = pixelSize / backend.units_per_em();
    Times ours;
    Times theirs;
    long columns = 0;
    for (int i = 0; i < repetitions; ++i) {
        ours.all.push_back(microseconds([&] {
            for (unsigned c = 0x20; c < 0x7F; ++c) columns += backend.rasterize(c, scale).width;
        }));
        theirs.all.push_back(microseconds([&] {
            for (unsigned c = 0x20; c < 0x7F; ++c) columns -= peer.draw(c);
        }));
    }
    std::printf("%s, 95 glyphs at %u px, microseconds best / median (check %ld)\n", path, pixelSize, columns);
    std::printf("kelmora   %7.1f / %7.1f\nfreetype  %7.1f / %7.1f\nratio of medians %.2f\n", ours.best(),
                ours.median(), theirs.best(), theirs.median(), ours.median() / theirs.median());
    return 0;
}
