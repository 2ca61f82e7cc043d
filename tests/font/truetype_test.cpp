#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/whole_file.h"
#include "font/installed_fonts.h"
#include "font/tiny_font.h"
#include "font/truetype_backend.h"

namespace kelmora {
namespace {

using Pieces = std::map<std::string, FontData>;

bool loads(const FontData& file) {
    return TrueTypeBackend().load(file);
}

// One pixel is 50 font units.
GlyphBitmap draw(const FontData& file, std::uint32_t codepoint, double scale = 0.02) {
    TrueTypeBackend backend;
    EXPECT_TRUE(backend.load(file));
    return backend.rasterize(codepoint, scale);
}

bool isBlank(const GlyphBitmap& glyph) {
    return glyph.width == 0 && glyph.height == 0 && glyph.pixels.empty();
}

int darkness(const GlyphBitmap& glyph) {
    int sum = 0;
    for (const std::uint8_t value : glyph.pixels) sum += value;
    return sum;
}

TEST(TrueType, DrawsSquaresCurvesAndBlanks) {
    const FontData file = makeTinyFont().file();
    const GlyphBitmap box = draw(file, 'A');
    EXPECT_EQ(box.width, 12);
    EXPECT_EQ(box.top, 11);
    EXPECT_DOUBLE_EQ(box.advance, 10.2);
    EXPECT_EQ(darkness(box), 100 * 255);
    const GlyphBitmap ring = draw(file, 'B');
    EXPECT_EQ(ring.width, 14);
    // Between the area of the diamond of the implied points and that of the square.
    EXPECT_GT(darkness(ring), 73 * 255);
    EXPECT_LT(darkness(ring), 144 * 255);
    EXPECT_EQ(ring.pixels[14 * 7 + 7], 255);
    EXPECT_EQ(ring.pixels[14 * 1 + 1], 0);
    const GlyphBitmap space = draw(file, 'C');
    EXPECT_TRUE(isBlank(space));
    EXPECT_DOUBLE_EQ(space.advance, 10.6);
    const GlyphBitmap missing = draw(file, 0x1F600);
    EXPECT_EQ(darkness(missing), (64 - 16) * 255);
}

TEST(TrueType, MetricsComeFromTheHeaders) {
    Pieces pieces = makeTinyFont().tables();
    TrueTypeBackend backend;
    ASSERT_TRUE(backend.load(TinyFont::join(pieces)));
    EXPECT_EQ(backend.units_per_em(), 1000);
    EXPECT_EQ(backend.ascent(), 800);
    EXPECT_EQ(backend.descent(), 200);
    EXPECT_EQ(backend.line_gap(), 0);
    EXPECT_EQ(backend.metric_rounding(), 0);
    pieces["hhea"] = TinyFont::words(36, {{4, 0x10000 - 7}, {6, 200}, {8, 0x10000 - 9}, {34, 4}});
    ASSERT_TRUE(backend.load(TinyFont::join(pieces)));
    EXPECT_EQ(backend.ascent(), -7);
    EXPECT_EQ(backend.descent(), 0);
    EXPECT_EQ(backend.line_gap(), 0);
}

TEST(TrueType, GlyphsBehindTheLastFullEntryShareItsAdvance) {
    Pieces pieces = makeTinyFont().tables();
    pieces["hhea"] = TinyFont::words(36, {{34, 1}});
    EXPECT_DOUBLE_EQ(draw(TinyFont::join(pieces), 'B').advance, 10);
    // Without room for the entry the glyph is a blank em. `zzzz` keeps the entry's place at the file's end.
    const FontData metrics = pieces["hmtx"];
    pieces.erase("hmtx");
    pieces["zzzz"] = FontData(metrics.begin(), metrics.begin() + 4);
    FontData file = TinyFont::join(pieces);
    const std::string name = "zzzz";
    const auto entry = std::search(file.begin(), file.end(), name.begin(), name.end());
    std::copy_n("hmtx", 4, entry);
    const GlyphBitmap lost = draw(file, 'A');
    EXPECT_TRUE(isBlank(lost));
    EXPECT_DOUBLE_EQ(lost.advance, 20);
    EXPECT_EQ(draw(file, 'z').advance, 10);
}

TEST(TrueType, CharacterTables) {
    TinyFont font = makeTinyFont();
    const auto glyphFor = [&](std::uint32_t codepoint) {
        const double advance = draw(font.file(), codepoint, 1).advance;
        return static_cast<int>(advance - 500) / 10;
    };
    const FontData small = TinyFont::format4({{'A', 'A', -'A'}, {'B', 'B', 2 - 'B'}});
    font.map =
        TinyFont::cmap({{3, 1, small}, {0, 3, TinyFont::format12({{'A', 'C', 1}, {0x1F600, 0x1F600, 3}})}});
    EXPECT_EQ(glyphFor('A'), 1) << "the segments answer 0, so the groups are asked";
    EXPECT_EQ(glyphFor('B'), 2);
    EXPECT_EQ(glyphFor(0x1F600), 3);
    EXPECT_EQ(glyphFor(0x10042), 0);

    font.map = TinyFont::cmap({{3, 1, TinyFont::format4({{'A', 'A', 1 - 'A'}, {'C', 'C', 3 - 'C'}})}});
    EXPECT_EQ(glyphFor('B'), 0) << "between two segments";
    EXPECT_EQ(glyphFor('C'), 3);

    const FontData first = TinyFont::format12({{'A', 'A', 1}});
    const FontData second = TinyFont::format12({{'A', 'A', 2}});
    font.map = TinyFont::cmap({{3, 1, first}, {3, 3, second}});
    EXPECT_EQ(glyphFor('A'), 1);
    font.map = TinyFont::cmap({{3, 10, first}, {0, 4, second}});
    EXPECT_EQ(glyphFor('A'), 2);
    font.map = TinyFont::cmap({{3, 1, small}, {3, 10, first}, {3, 10, TinyFont::format12({})}});
    EXPECT_EQ(glyphFor('A'), 0) << "the empty list threw the groups away";

    const FontData other = TinyFont::format4({{'B', 'B', 3 - 'B'}});
    font.map = TinyFont::cmap({{0, 3, small}, {0, 4, other}});
    EXPECT_EQ(glyphFor('B'), 2);
    font.map = TinyFont::cmap({{0, 3, small}, {3, 1, other}});
    EXPECT_EQ(glyphFor('B'), 3);
    font.map = TinyFont::cmap({{1, 1, other}});
    EXPECT_FALSE(loads(font.file()));
    font.map = TinyFont::cmap({{3, 10, TinyFont::format12({})}});
    EXPECT_FALSE(loads(font.file()));
    font.map = TinyFont::cmap({{3, 1, TinyFont::format4({{'B', 'B', 500}})}});
    EXPECT_EQ(glyphFor('B'), 0) << "a glyph the font does not have";
}

TEST(TrueType, SegmentsMayPointIntoTheirGlyphArray) {
    FontData map = TinyFont::format4({{'A', 'B', 1}});
    map[2] = 0;
    map[3] = static_cast<std::uint8_t>(map.size() + 4);
    map[map.size() - 3] = 4;  // the first of two range offsets: behind both
    put16(map, 0);
    put16(map, 1);
    TinyFont font = makeTinyFont();
    font.map = TinyFont::cmap({{3, 1, map}});
    EXPECT_EQ(draw(font.file(), 'A', 1).advance, 500) << "a stored 0 is a miss whatever the delta";
    EXPECT_EQ(draw(font.file(), 'B', 1).advance, 520);
    map[map.size() - 7] = 0xFF;
    font.map = TinyFont::cmap({{3, 1, map}});
    const GlyphBitmap outside = draw(font.file(), 'B', 1);
    EXPECT_EQ(outside.advance, 500);
}

constexpr int offsets = 0x0003;  // words that are offsets
constexpr int more = 0x0020;

TEST(TrueType, CompositesMoveScaleAndNest) {
    TinyFont font = makeTinyFont();
    font.addGlyph(TinyFont::composite({{offsets | more, 1, 100, 50}, {offsets | 0x0008, 1, -50, 0, 0x2000}}));
    const GlyphBitmap pair = draw(font.file(), 'D');
    EXPECT_EQ(pair.left, -2);
    EXPECT_EQ(pair.top, 12);
    EXPECT_EQ(pair.width, 15);
    // x' = b y: the second of the four stored values takes y to x.
    font.addGlyph(TinyFont::composite({{offsets | 0x0080, 1, 0, 0, 0x4000, 0x2000, 0, 0x4000}}));
    EXPECT_EQ(draw(font.file(), 'E').width, 17);
    // A scaled offset goes through the matrix, a plain one does not.
    font.addGlyph(TinyFont::composite({{offsets | 0x0808, 1, 200, 0, 0x2000}}));
    EXPECT_EQ(draw(font.file(), 'F').left, 1);
    font.addGlyph(TinyFont::composite({{offsets | 0x0008, 1, 200, 0, 0x2000}}));
    EXPECT_EQ(draw(font.file(), 'G').left, 3);
    // Bytes as arguments, and instructions between the components.
    font.addGlyph(TinyFont::composite({{0x0002 | 0x0100 | more, 1, 0x64CE, 2, 0x1234}, {offsets, 1, 0, 0}}));
    const GlyphBitmap instructed = draw(font.file(), 'H');
    EXPECT_EQ(instructed.width, 14);
    EXPECT_EQ(instructed.height, 13);
}

TEST(TrueType, MalformedGlyphsAreBlankAndKeepTheirAdvance) {
    TinyFont font = makeTinyFont();
    const std::size_t firstBad = font.glyphs.size();
    font.addGlyph(TinyFont::composite({{0x0001, 1, 0, 0}}));                    // placed by points
    font.addGlyph(TinyFont::composite({{offsets | more, 1, 0, 0}}));            // promises another
    font.addGlyph(TinyFont::composite({{offsets | 0x0100, 1, 0, 0, 0x7FFF}}));  // instructions past the end
    font.addGlyph(TinyFont::composite({{offsets, int(firstBad) + 3, 0, 0}}));   // itself
    FontData backwards = TinyFont::outline({square(0, 100), square(0, 50)});
    backwards[11] = 9;
    font.addGlyph(backwards);
    for (std::size_t i = firstBad; i < font.glyphs.size(); ++i) {
        const GlyphBitmap glyph = draw(font.file(), static_cast<std::uint32_t>('A' + i - 1));
        EXPECT_TRUE(isBlank(glyph)) << i;
        EXPECT_DOUBLE_EQ(glyph.advance, (500 + 10 * static_cast<double>(i)) * 0.02);
    }
    font.addOutline({{{300, 300}}});
    EXPECT_TRUE(isBlank(draw(font.file(), static_cast<std::uint32_t>('A' + font.glyphs.size() - 2))));
}

TEST(TrueType, TwelveLevelsOfComposites) {
    TinyFont font = makeTinyFont();
    font.addGlyph(TinyFont::composite({{offsets, 1, 0, 0}}));
    for (int i = 4; i < 16; ++i) font.addGlyph(TinyFont::composite({{offsets, i, 0, 0}}));
    EXPECT_FALSE(isBlank(draw(font.file(), 'A' + 14)));
    EXPECT_TRUE(isBlank(draw(font.file(), 'A' + 15)));
}

TEST(TrueType, BranchingCompositesRunOutOfComponents) {
    TinyFont font = makeTinyFont();
    for (int i = 4; i < 15; ++i) {
        std::vector<std::vector<int>> parts(64, {offsets | more, i == 4 ? 1 : i - 1, 0, 0});
        parts.back()[0] = offsets;
        font.addGlyph(TinyFont::composite(parts));
    }
    EXPECT_FALSE(isBlank(draw(font.file(), 'A' + 3))) << "64 times 64 would be too many, 64 are not";
    EXPECT_TRUE(isBlank(draw(font.file(), 'A' + 13)));
}

TEST(TrueType, RefusesFilesWithoutWhatItNeeds) {
    const Pieces whole = makeTinyFont().tables();
    for (const auto& [name, bytes] : whole) {
        Pieces pieces = whole;
        pieces.erase(name);
        EXPECT_FALSE(loads(TinyFont::join(pieces))) << name;
    }
    const auto refuses = [&](const char* table, std::size_t at, unsigned value) {
        Pieces pieces = whole;
        pieces[table][at] = static_cast<std::uint8_t>(value >> 8);
        pieces[table][at + 1] = static_cast<std::uint8_t>(value);
        return !loads(TinyFont::join(pieces));
    };
    EXPECT_TRUE(refuses("head", 18, 0)) << "no units";
    EXPECT_TRUE(refuses("hhea", 34, 0)) << "no metrics";
    EXPECT_TRUE(refuses("maxp", 4, 0)) << "no glyphs";
    EXPECT_TRUE(refuses("maxp", 4, 0xFFFF)) << "more glyphs than offsets";
    EXPECT_TRUE(refuses("loca", 4, 0x7FFF)) << "an offset outside the glyphs";
    EXPECT_TRUE(refuses("cmap", 2, 0xFFFF)) << "more records than bytes";
    EXPECT_TRUE(refuses("cmap", 4 + 8 + 6, 3)) << "an odd array size";
    EXPECT_FALSE(refuses("hhea", 34, 0xFFFF));
}

TEST(TrueType, TheLaterOfTwoTablesWins) {
    TinyFont font = makeTinyFont();
    FontData file = font.file();
    Pieces pieces = font.tables();
    pieces["hhez"] = TinyFont::words(36, {{4, 700}, {34, 4}});
    file = TinyFont::join(pieces);
    const std::string name = "hhez";
    std::copy_n("hhea", 4, std::search(file.begin(), file.end(), name.begin(), name.end()));
    TrueTypeBackend backend;
    ASSERT_TRUE(backend.load(file));
    EXPECT_EQ(backend.ascent(), 700);
}

void drawAll(const FontData& file) {
    TrueTypeBackend backend;
    if (!backend.load(file)) return;
    for (const std::uint32_t codepoint : {0x20u, 0x41u, 0x42u, 0x45u, 0x4Au, 0x1F600u})
        backend.rasterize(codepoint, 0.01);
}

FontData fontWithEverything() {
    TinyFont font = makeTinyFont();
    font.addGlyph(
        TinyFont::composite({{offsets | more, 1, 100, 50}, {offsets | 0x0080, 2, 0, 0, 1, 2, 3, 4}}));
    font.map = TinyFont::cmap({{3, 1, TinyFont::format4({{'A', 'F', 1 - 'A'}})},
                               {3, 10, TinyFont::format12({{0x1F600, 0x1F600, 2}})}});
    return font.file();
}

// A sanitised build watches the reads.
TEST(TrueType, NoDamageReadsPastTheEnd) {
    const FontData whole = fontWithEverything();
    for (std::size_t size = 0; size < whole.size(); ++size)
        drawAll(FontData(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    std::mt19937 random(3);
    for (int i = 0; i < 4000; ++i) {
        FontData damaged = whole;
        for (unsigned changes = 1 + random() % 4; changes > 0; --changes)
            damaged[random() % damaged.size()] =
                static_cast<std::uint8_t>(random() % 3 == 0 ? 0xFF : random());
        drawAll(damaged);
    }
}

TEST(TrueType, TablesCutAnywhereNeitherLoadBadlyNorCrash) {
    const Pieces whole = makeTinyFont().tables();
    for (const auto& [name, bytes] : whole) {
        for (std::size_t size = 0; size < bytes.size(); size += 16) {
            Pieces pieces = whole;
            pieces[name].resize(size);
            drawAll(TinyFont::join(pieces));
        }
    }
}

TEST(TrueType, InstalledFontDrawsBothPlanes) {
    const auto bytes = readWholeFileBytes(dejaVuSans);
    if (!bytes) GTEST_SKIP() << dejaVuSans << " is not installed";
    TrueTypeBackend backend;
    ASSERT_TRUE(backend.load(*bytes));
    EXPECT_EQ(backend.units_per_em(), 2048);
    const double scale = 24 / backend.units_per_em();
    for (std::uint32_t codepoint = 0x21; codepoint < 0x7F; ++codepoint)
        EXPECT_GT(darkness(backend.rasterize(codepoint, scale)), 0) << codepoint;
    EXPECT_NEAR(backend.rasterize('M', scale).advance, 1767 * scale, 1e-9);
    const GlyphBitmap missing = backend.rasterize(0xE0FFF, scale);
    EXPECT_NE(backend.rasterize(0x1D538, scale).pixels, missing.pixels) << "a mathematical letter";
    EXPECT_GT(backend.rasterize(0xC4, scale).height, backend.rasterize('A', scale).height) << "a composite";
}

// One of its characters lies outside of the first plane, where only the table of wide codes has it.
TEST(TrueType, InstalledFontDrawsHanCharacters) {
    const std::string path = "/usr/share/fonts/truetype/vlgothic/VL-Gothic-Regular.ttf";
    const auto bytes = readWholeFileBytes(path);
    if (!bytes) GTEST_SKIP() << path << " is not installed";
    TrueTypeBackend backend;
    ASSERT_TRUE(backend.load(*bytes));
    const double scale = 24 / backend.units_per_em();
    const GlyphBitmap missing = backend.rasterize(0xE0FFF, scale);
    for (const std::uint32_t codepoint : {0x6C38u, 0x706Fu, 0x20B9Fu}) {
        const GlyphBitmap glyph = backend.rasterize(codepoint, scale);
        EXPECT_GT(darkness(glyph), 0) << codepoint;
        EXPECT_NE(glyph.pixels, missing.pixels) << codepoint;
        EXPECT_NEAR(glyph.advance, 24, 1e-9) << codepoint;
    }
    EXPECT_NEAR(backend.rasterize('a', scale).advance, 12, 1e-9);
}

}  // namespace
}  // namespace kelmora
