#include "font/font_service.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "base/whole_file.h"
#include "font/text_lines.h"
#include "font/tiny_font.h"

namespace kelmora {
namespace {

struct ImageDeleter {
    void operator()(PlushImage* image) const {
        std::free(image->pixels);
        delete image;
    }
};
using Image = std::unique_ptr<PlushImage, ImageDeleter>;

// The tiny font at 10 pixels to the em: "A" is 5 by 5 pixels with an advance of 5.1.
class FontService : public testing::Test {
protected:
    FontService() { open(makeTinyFont().file(), 10); }
    ~FontService() override { vh_ttf_font_free(font_); }

    void open(const FontData& file, float size) {
        vh_ttf_font_free(font_);
        font_ = vh_ttf_font_load_memory(file.data(), static_cast<std::uint32_t>(file.size()), size);
        ASSERT_NE(font_, nullptr);
    }
    Image render(const char* text, int r = 1, int g = 2, int b = 3, double a = 255) {
        return Image(vh_ttf_font_render(font_, text, r, g, b, a));
    }
    FontHandle& font() { return *static_cast<FontHandle*>(font_); }

    void* font_ = nullptr;
};

int alphaAt(const PlushImage& image, int x, int y) {
    return image.pixels[(y * image.width + x) * 4 + 3];
}

using Points = std::vector<std::uint32_t>;

TEST(TextLines, DecodesUtf8ByteByByteWhereItIsBroken) {
    EXPECT_EQ(decodeUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), (Points{'a', 0xE9, 0x20AC, 0x1F600}));
    EXPECT_EQ(decodeUtf8("\xC3"), (Points{0xFFFD}));
    EXPECT_EQ(decodeUtf8("\xC3"
                         "A"),
              (Points{0xFFFD, 'A'}));
    EXPECT_EQ(decodeUtf8("\xE2\x82"), (Points{0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUtf8("\x80\xFF\xF8"), (Points{0xFFFD, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUtf8("\xC0\x80\xED\xA0\x80"), (Points{0, 0xD800}));
}

TEST(TextLines, SplitsAtLineFeedsAndDropsReturns) {
    EXPECT_EQ(splitLines({}), (std::vector<Points>{{}}));
    EXPECT_EQ(splitLines({'a', '\r', '\n'}), (std::vector<Points>{{'a'}, {}}));
}

TEST_F(FontService, ColoursEveryPixelAndScalesAlpha) {
    const Image image = render("A", 300, -5, 7, 127.5);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->width, 7) << "the glyph's margin moved the line by a pixel";
    EXPECT_EQ(image->height, 10);
    for (int i = 0; i < 70; ++i) {
        EXPECT_EQ(image->pixels[i * 4], 255);
        EXPECT_EQ(image->pixels[i * 4 + 1], 0);
        EXPECT_EQ(image->pixels[i * 4 + 2], 7);
    }
    EXPECT_EQ(alphaAt(*image, 3, 5), 128);
    EXPECT_EQ(alphaAt(*image, 3, 2), 0);
    EXPECT_EQ(alphaAt(*image, 0, 5), 0);
    EXPECT_EQ(image->reflectPixels, nullptr);
}

TEST_F(FontService, TextWithoutGlyphsHasASize) {
    const Image empty = render("");
    EXPECT_EQ(empty->width, 0);
    EXPECT_EQ(empty->height, 0);
    EXPECT_EQ(empty->pixels[0], 0);
    const Image returned = render("\r");
    EXPECT_EQ(returned->width, 1);
    EXPECT_EQ(returned->height, 10);
    const Image spaces = render("CCC");
    EXPECT_EQ(spaces->width, 16) << "3 times 5.3, upwards";
    EXPECT_EQ(spaces->height, 10);
    EXPECT_EQ(render("A\n")->height, 20);
    EXPECT_EQ(vh_ttf_font_render(font_, nullptr, 0, 0, 0, 0), nullptr);
    EXPECT_EQ(vh_ttf_font_render(nullptr, "A", 0, 0, 0, 0), nullptr);
}

TEST_F(FontService, EachLineMovesForItsOwnOverhang) {
    TinyFont tiny = makeTinyFont();
    tiny.addOutline({square(-300, 1200)});
    open(tiny.file(), 10);
    // "D" reaches from 3 below to 12 above the baseline, which is 8 below the line's top, with margins.
    const Image image = render("D\nA");
    EXPECT_EQ(image->width, 17);
    EXPECT_EQ(image->height, 17 + 10);
    EXPECT_EQ(alphaAt(*image, 1, 1), 255);
    EXPECT_EQ(alphaAt(*image, 15, 15), 255);
    EXPECT_EQ(alphaAt(*image, 0, 17 + 5), 0);
    EXPECT_EQ(alphaAt(*image, 1, 17 + 5), 255);
    EXPECT_EQ(alphaAt(*image, 6, 17 + 5), 0);
}

TEST_F(FontService, OverlapsMergeLikeAScreen) {
    TinyFont tiny = makeTinyFont();
    auto pieces = tiny.tables();
    for (std::uint8_t& byte : pieces["hmtx"]) byte = 0;
    tiny.glyphs[1] = TinyFont::outline({{{0, 0}, {0, 500}, {50, 500}, {50, 0}}});
    pieces["glyf"] = tiny.tables()["glyf"];
    pieces["loca"] = tiny.tables()["loca"];
    open(TinyFont::join(pieces), 10);
    EXPECT_EQ(alphaAt(*render("A"), 1, 5), 127) << "half a pixel is 8 of 16 samples";
    EXPECT_EQ(alphaAt(*render("AA"), 1, 5), 127 + 127 * 128 / 255);
}

TEST_F(FontService, GlyphsAreKeptUntilTheSizeChanges) {
    render("ABA");
    ASSERT_EQ(font().glyphs.size(), 2u);
    const std::uint8_t* kept = font().glyphs.at('A').pixels.data();
    render("A");
    EXPECT_EQ(font().glyphs.at('A').pixels.data(), kept);
    vh_ttf_font_resize(font_, 20);
    EXPECT_TRUE(font().glyphs.empty());
    EXPECT_EQ(render("A")->height, 20);
}

TEST_F(FontService, SizesBelowOneMeanOne) {
    for (const float size : {0.0f, -3.0f, 1.0f, NAN}) {
        vh_ttf_font_resize(font_, size);
        EXPECT_EQ(font().size, 1.0f);
        EXPECT_EQ(render("A")->height, 3) << "the glyph's margins are higher than the line";
    }
    vh_ttf_font_resize(nullptr, 5);
}

TEST_F(FontService, ImagesBeyondThirtyTwoBitsRaise) {
    vh_ttf_font_resize(font_, 1e9f);
    EXPECT_THROW(render("A"), std::length_error);
    vh_ttf_font_resize(font_, INFINITY);
    EXPECT_THROW(render("A\nA"), std::length_error);
}

TEST(FontServiceLoading, RefusesWhatIsNoFont) {
    const FontData file = makeTinyFont().file();
    const auto refuses = [](const FontData& bytes) {
        return vh_ttf_font_load_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), 10) == nullptr;
    };
    EXPECT_TRUE(refuses({}));
    EXPECT_TRUE(refuses({0, 1, 0}));
    EXPECT_TRUE(refuses({'%', '!'}));
    EXPECT_TRUE(refuses({0x80}));
    EXPECT_TRUE(refuses(FontData(file.begin(), file.begin() + 40)));
    EXPECT_TRUE(refuses({'O', 'T', 'T', 'O', 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(vh_ttf_font_load_memory(nullptr, 10, 10), nullptr);
    EXPECT_EQ(vh_ttf_font_load(nullptr, 10), nullptr);
    EXPECT_EQ(vh_ttf_font_load("no/such/font", 10), nullptr);
    vh_ttf_font_free(nullptr);
}

TEST(FontServiceLoading, ReadsAFile) {
    const auto path = (std::filesystem::temp_directory_path() / "kelmora_font_test.ttf").string();
    FontData file = makeTinyFont().file();
    std::copy_n("true", 4, file.begin());
    ASSERT_TRUE(writeWholeFileBytes(path, file));
    void* font = vh_ttf_font_load(path.c_str(), 12.5f);
    std::filesystem::remove(path);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(static_cast<FontHandle*>(font)->size, 12.5f);
    vh_ttf_font_free(font);
}

}  // namespace
}  // namespace kelmora
