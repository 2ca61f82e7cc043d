#include <gtest/gtest.h>

#include <random>

#include "base/whole_file.h"
#include "font/font_service.h"
#include "font/installed_fonts.h"
#include "font/tiny_type1.h"
#include "font/type1_backend.h"
#include "font/type1_glyph_names.h"

namespace kelmora {
namespace {

// One pixel is 50 font units.
GlyphBitmap draw(const TinyType1& font, std::uint32_t codepoint) {
    Type1Backend backend;
    EXPECT_TRUE(backend.load(font.raw()));
    return backend.rasterize(codepoint, 0.02);
}

int darkness(const GlyphBitmap& glyph) {
    int sum = 0;
    for (const std::uint8_t value : glyph.pixels) sum += value;
    return sum;
}

bool isBlank(const GlyphBitmap& glyph) {
    return glyph.width == 0 && glyph.pixels.empty();
}

// Replaces "A" by a program, and says whether it draws nothing.
bool refuses(const Program& program, std::vector<Program> subrs = {}) {
    TinyType1 font = makeTinyType1();
    if (!subrs.empty()) font.subrs = std::move(subrs);
    font.glyphs = {{"A", program}};
    return isBlank(draw(font, 'A'));
}

TEST(Type1, DrawsAtTheBearingInEveryForm) {
    const TinyType1 font = makeTinyType1();
    for (const FontData& file : {font.raw(), font.hexadecimal(), font.segmented()}) {
        Type1Backend backend;
        ASSERT_TRUE(backend.load(file));
        const GlyphBitmap glyph = backend.rasterize('A', 0.02);
        EXPECT_EQ(glyph.left, 1);
        EXPECT_EQ(glyph.top, 11);
        EXPECT_EQ(darkness(glyph), 100 * 255);
        EXPECT_DOUBLE_EQ(glyph.advance, 14);
        const GlyphBitmap space = backend.rasterize(' ', 0.02);
        EXPECT_TRUE(isBlank(space));
        EXPECT_DOUBLE_EQ(space.advance, 5);
        EXPECT_EQ(darkness(backend.rasterize(0x4E00, 0.02)), 36 * 255) << "the font's own missing glyph";
    }
}

TEST(Type1, PrivatePartsBeginWithAnyByteAndOpenTheirGlyphsInTwoWays) {
    TinyType1 font = makeTinyType1();
    font.opener = "dup";
    EXPECT_EQ(darkness(draw(font, 'A')), 100 * 255);
    for (const char first : {'\0', '\f', '\v'}) {
        font.padding[0] = static_cast<char>(first ^ 0xD9);  // the first byte of the key
        EXPECT_EQ(darkness(draw(font, 'A')), 100 * 255) << int{first};
    }
}

TEST(Type1, PaddingOfCharstringsMayVaryOrBeAbsent) {
    for (const int padding : {-1, 0, 1, 9}) {
        TinyType1 font = makeTinyType1();
        font.lenIV = padding;
        EXPECT_EQ(darkness(draw(font, 'A')), 100 * 255) << padding;
    }
}

TEST(Type1, AccentsSitOverTheirBase) {
    const GlyphBitmap glyph = draw(makeTinyType1(), 0xC1);
    EXPECT_EQ(darkness(glyph), (100 + 4) * 255);
    EXPECT_EQ(glyph.top, 17) << "700 from the accent, 100 higher";
    EXPECT_DOUBLE_EQ(glyph.advance, 14);
    // The accent's edge stands at 100 + 350; its own bearing is not added.
    const std::size_t row = static_cast<std::size_t>(glyph.width);
    const std::size_t first = 9 - static_cast<std::size_t>(glyph.left);
    EXPECT_EQ(glyph.pixels[row + first - 1], 0);
    EXPECT_EQ(glyph.pixels[row + first], 255);
    EXPECT_EQ(glyph.pixels[row + first + 2], 0);
}

TEST(Type1, FlexesSubroutinesAndFractions) {
    const TinyType1 font = makeTinyType1();
    EXPECT_EQ(darkness(draw(font, 'C')), 64 * 255);
    Type1Backend backend;
    ASSERT_TRUE(backend.load(font.raw()));
    const GlyphBitmap bulging = backend.rasterize('B', 0.1);
    EXPECT_EQ(bulging.top, 43) << "the flex rises 2 pixels above 40";
    EXPECT_EQ(bulging.left, -1);
    const GlyphBitmap wide = backend.rasterize(0x416, 0.1);
    EXPECT_DOUBLE_EQ(wide.advance, 90);
}

TEST(Type1, DivisionTakesTheTwoOnTop) {
    TinyType1 font = makeTinyType1();
    font.glyphs = {{"A", Program().n(0).escape({1300, 2}, 12).op({}, 13).box(500, 500).op({}, 14)}};
    EXPECT_DOUBLE_EQ(draw(font, 'A').advance, 13);
}

TEST(Type1, MetricsComeFromTheBoxAndTheMatrix) {
    TinyType1 font = makeTinyType1();
    Type1Backend backend;
    ASSERT_TRUE(backend.load(font.raw()));
    EXPECT_EQ(backend.units_per_em(), 1000);
    EXPECT_EQ(backend.ascent(), 800);
    EXPECT_EQ(backend.descent(), 200);
    EXPECT_EQ(backend.line_gap(), 0);
    EXPECT_EQ(backend.metric_rounding(), 1);
    font.matrix = "0.00025 0 0 0.0005 0 0";
    font.box = "0 0 0 0";
    ASSERT_TRUE(backend.load(font.raw()));
    EXPECT_EQ(backend.units_per_em(), 2000);
    EXPECT_EQ(backend.ascent(), 1600);
    EXPECT_EQ(backend.descent(), 400);
    const GlyphBitmap narrow = backend.rasterize('A', 0.02);
    EXPECT_EQ(narrow.width, 7);
    EXPECT_EQ(narrow.height, 12);
    EXPECT_DOUBLE_EQ(narrow.advance, 7);
    for (const char* matrix : {"0 0 0 0 0 0", "nan 0 0 nan 0 0", "0.001 0 0", "1e9 0 0 0.001 0 0"}) {
        font.matrix = matrix;
        ASSERT_TRUE(backend.load(font.raw()));
        EXPECT_EQ(backend.units_per_em(), 1000) << matrix;
    }
}

TEST(Type1, TheServiceRoundsItsMetricsToNearest) {
    const FontData file = makeTinyType1().segmented();
    void* font = vh_ttf_font_load_memory(file.data(), static_cast<std::uint32_t>(file.size()), 10.4f);
    ASSERT_NE(font, nullptr);
    PlushImage* image = vh_ttf_font_render(font, "\n", 0, 0, 0, 255);
    EXPECT_EQ(image->height, 20) << "twice 10.4";
    std::free(image->pixels);
    delete image;
    vh_ttf_font_free(font);
}

TEST(Type1, MalformedProgramsAreBlank) {
    const auto start = [] { return Program().op({0, 500}, 13); };
    EXPECT_FALSE(refuses(start().box(300, 300).op({}, 14)));
    EXPECT_FALSE(refuses(start().box(300, 300))) << "the end may be missing";
    EXPECT_TRUE(refuses(start().box(300, 300).op({1}, 5))) << "too few operands";
    EXPECT_TRUE(refuses(start().box(300, 300).op({}, 15))) << "no such command";
    EXPECT_TRUE(refuses(start().box(300, 300).escape({}, 99)));
    EXPECT_TRUE(refuses(start().box(300, 300).op({}, 12))) << "an escape of nothing";
    EXPECT_TRUE(refuses(start().box(300, 300).escape({1, 0}, 12))) << "division by nothing";
    EXPECT_TRUE(refuses(start().box(300, 300).escape({}, 17))) << "nothing to pop";
    EXPECT_TRUE(refuses(start().box(300, 300).escape({9, 3}, 16))) << "more arguments than there are";
    EXPECT_TRUE(refuses(start().box(300, 300).op({50, 0, 0, 0}, 10))) << "a flex without points";
    EXPECT_TRUE(refuses(start().box(300, 300).op({-1}, 10)));
    EXPECT_TRUE(refuses(start().box(300, 300).op({5}, 10)));
    EXPECT_TRUE(refuses(start().escape({0, 0, 0, 65, 65}, 6))) << "an accented letter of itself";
    EXPECT_TRUE(refuses(Program().escape({0, 0, 0, 65, 65}, 6)));
    Program deep = start();
    for (int i = 0; i < 100; ++i) deep.n(i);
    EXPECT_TRUE(refuses(deep));
    Program cut = start();
    cut.bytes += "\xFF\x01";
    EXPECT_TRUE(refuses(cut));
}

TEST(Type1, SubroutinesThatCallThemselvesEnd) {
    const Program start = Program().op({0, 500}, 13).op({0}, 10);
    EXPECT_TRUE(refuses(start, {Program().op({0}, 10)}));
    // Each calls the next sixty times: without a budget, for ever.
    std::vector<Program> fan(15);
    for (int i = 0; i < 14; ++i)
        for (int k = 0; k < 60; ++k) fan[static_cast<std::size_t>(i)].op({i + 1}, 10);
    fan[14].op({1, 1}, 5);
    EXPECT_TRUE(refuses(start, fan));
}

TEST(Type1, NamesAreThoseOfThePublishedList) {
    const auto names = [](const char* name) { return codepointOfGlyphName(name).value_or(0); };
    EXPECT_EQ(names("A"), 'A');
    EXPECT_EQ(names("zero"), '0');
    EXPECT_EQ(names("germandbls"), 0xDFu);
    EXPECT_EQ(names("afii10049"), 0x42Fu);
    EXPECT_EQ(names("zeta"), 0x3B6u);
    EXPECT_EQ(names("Abreveacute"), 0x1EAEu);
    EXPECT_EQ(names("zukatakana"), 0x30BAu);
    EXPECT_EQ(names("parenlefttp"), 0x239Bu);
    EXPECT_EQ(names("uni20AC"), 0x20ACu);
    EXPECT_EQ(names("u1F600"), 0x1F600u);
    for (const char* none : {"", "uni20A", "uni20AG", "u12", "uFFFFFF", ".notdef", "A.alt"})
        EXPECT_FALSE(codepointOfGlyphName(none).has_value()) << none;
    EXPECT_EQ(standardEncodingName(65), "A");
    EXPECT_EQ(standardEncodingName(251), "germandbls");
    EXPECT_EQ(standardEncodingName(128), "");
}

void drawAll(const FontData& file) {
    Type1Backend backend;
    if (!backend.load(file)) return;
    for (const std::uint32_t codepoint : {0x20u, 0x41u, 0xC1u, 0x42u, 0x43u, 0x416u, 0x4E00u})
        backend.rasterize(codepoint, 0.01);
}

// A sanitised build watches the reads.
TEST(Type1, NoDamageReadsPastTheEnd) {
    const TinyType1 font = makeTinyType1();
    for (const FontData& whole : {font.raw(), font.segmented(), font.hexadecimal()}) {
        for (std::size_t size = 0; size < whole.size(); size += 3)
            drawAll(FontData(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    }
    // Behind the encryption, where a change of one byte would scatter.
    std::mt19937 random(5);
    const std::string plain = font.privatePart();
    for (int i = 0; i < 2000; ++i) {
        std::string damaged = plain;
        for (unsigned changes = 1 + random() % 4; changes > 0; --changes)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        drawAll(TinyType1::data(font.clearPart() + TinyType1::encrypt("wxyz" + damaged, 55665)));
        TinyType1 programs = font;
        programs.lenIV = -1;
        std::string& program = programs.glyphs[2 + random() % 4].second.bytes;
        program[random() % program.size()] = static_cast<char>(random());
        drawAll(programs.raw());
    }
}

TEST(Type1, RefusesWhatHoldsNoGlyph) {
    TinyType1 font = makeTinyType1();
    font.glyphs.clear();
    Type1Backend backend;
    EXPECT_FALSE(backend.load(font.raw()));
    EXPECT_FALSE(backend.load(TinyType1::data("%!PS-AdobeFont-1.0: Tiny\n")));
    EXPECT_FALSE(backend.load(TinyType1::data("%!\ncurrentfile eexec")));
    EXPECT_FALSE(backend.load({0x80, 1, 0xFF, 0xFF, 0xFF, 0xFF, '%'}));
    EXPECT_FALSE(backend.load({}));
}

TEST(Type1, InstalledFontsDrawAlikeInBothForms) {
    const auto text = readWholeFileBytes(nimbusRoman);
    const auto binary = readWholeFileBytes(nimbusRomanBinary);
    if (!text || !binary) GTEST_SKIP() << nimbusRoman << " is not installed in both forms";
    Type1Backend first;
    Type1Backend second;
    ASSERT_TRUE(first.load(*text));
    ASSERT_TRUE(second.load(*binary));
    for (std::uint32_t codepoint = 0x21; codepoint < 0x17F; ++codepoint) {
        if (codepoint >= 0x7F && codepoint < 0xA1) continue;
        const GlyphBitmap glyph = first.rasterize(codepoint, 0.024);
        EXPECT_GT(darkness(glyph), 0) << codepoint;
        EXPECT_EQ(glyph.pixels, second.rasterize(codepoint, 0.024).pixels) << codepoint;
    }
    EXPECT_NEAR(first.rasterize('A', 0.024).advance, 722 * 0.024, 1e-9);
}

}  // namespace
}  // namespace kelmora
