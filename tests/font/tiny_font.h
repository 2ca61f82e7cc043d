#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kelmora {

using FontData = std::vector<std::uint8_t>;

inline void put16(FontData& out, unsigned value) {
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

inline void put32(FontData& out, std::uint32_t value) {
    put16(out, value >> 16);
    put16(out, value & 0xFFFF);
}

struct TinyPoint {
    int x;
    int y;
    bool onCurve = true;
};
using TinyContour = std::vector<TinyPoint>;

// A TrueType file made in memory: 1000 units to the em, ascent 800, descent 200, line gap 0. Glyph i has the
// advance 500 + 10 i. Tables may be replaced or dropped before `file` joins them.
class TinyFont {
public:
    void addGlyph(FontData description) {
        if (description.size() % 2 != 0) description.push_back(0);
        glyphs.push_back(std::move(description));
    }
    void addOutline(const std::vector<TinyContour>& contours) { addGlyph(outline(contours)); }
    void addBlank() { glyphs.emplace_back(); }

    static FontData outline(const std::vector<TinyContour>& contours) {
        FontData out = header(static_cast<int>(contours.size()));
        unsigned end = 0;
        for (const TinyContour& contour : contours)
            put16(out, (end += static_cast<unsigned>(contour.size())) - 1);
        put16(out, 0);
        for (const TinyContour& contour : contours)
            for (const TinyPoint& point : contour) out.push_back(point.onCurve ? 1 : 0);
        putDeltas(out, contours, &TinyPoint::x);
        putDeltas(out, contours, &TinyPoint::y);
        return out;
    }

    // Flags are given whole, so that damaged composites can be made too; arguments are words.
    static FontData composite(const std::vector<std::vector<int>>& words) {
        FontData out = header(-1);
        for (const auto& component : words)
            for (const int word : component) put16(out, static_cast<unsigned>(word) & 0xFFFF);
        return out;
    }

    // Segments of start, end, idDelta; the closing one is added.
    static FontData format4(std::vector<std::vector<int>> segments) {
        segments.push_back({0xFFFF, 0xFFFF, 1});
        FontData out;
        put16(out, 4);
        put16(out, static_cast<unsigned>(16 + 8 * segments.size()));
        put16(out, 0);
        put16(out, static_cast<unsigned>(segments.size() * 2));
        for (int i = 0; i < 3; ++i) put16(out, 0);
        for (const auto& segment : segments) put16(out, static_cast<unsigned>(segment[1]));
        put16(out, 0);
        for (const auto& segment : segments) put16(out, static_cast<unsigned>(segment[0]));
        for (const auto& segment : segments) put16(out, static_cast<unsigned>(segment[2]) & 0xFFFF);
        for (std::size_t i = 0; i < segments.size(); ++i) put16(out, 0);
        return out;
    }

    static FontData format12(const std::vector<std::vector<std::uint32_t>>& groups) {
        FontData out;
        put16(out, 12);
        put16(out, 0);
        put32(out, static_cast<std::uint32_t>(16 + 12 * groups.size()));
        put32(out, 0);
        put32(out, static_cast<std::uint32_t>(groups.size()));
        for (const auto& group : groups)
            for (const std::uint32_t value : group) put32(out, value);
        return out;
    }

    struct Subtable {
        unsigned platform;
        unsigned encoding;
        FontData bytes;
    };
    static FontData cmap(const std::vector<Subtable>& subtables) {
        FontData out;
        put16(out, 0);
        put16(out, static_cast<unsigned>(subtables.size()));
        std::size_t offset = 4 + 8 * subtables.size();
        for (const Subtable& subtable : subtables) {
            put16(out, subtable.platform);
            put16(out, subtable.encoding);
            put32(out, static_cast<std::uint32_t>(offset));
            offset += subtable.bytes.size();
        }
        for (const Subtable& subtable : subtables)
            out.insert(out.end(), subtable.bytes.begin(), subtable.bytes.end());
        return out;
    }

    // The tables as they stand; "A" is glyph 1, "B" glyph 2 and so on unless `cmap` was set.
    std::map<std::string, FontData> tables() const {
        std::map<std::string, FontData> out;
        FontData& loca = out["loca"];
        FontData& glyf = out["glyf"];
        FontData& hmtx = out["hmtx"];
        put32(loca, 0);
        for (std::size_t i = 0; i < glyphs.size(); ++i) {
            glyf.insert(glyf.end(), glyphs[i].begin(), glyphs[i].end());
            put32(loca, static_cast<std::uint32_t>(glyf.size()));
            put16(hmtx, static_cast<unsigned>(500 + 10 * i));
            put16(hmtx, 0);
        }
        out["head"] = words(54, {{18, 1000}, {50, 1}});
        out["hhea"] = words(36, {{4, 800}, {6, 0x10000 - 200}, {34, static_cast<unsigned>(glyphs.size())}});
        out["maxp"] = words(6, {{4, static_cast<unsigned>(glyphs.size())}});
        out["cmap"] = map.empty() ? cmap({{3, 1, format4({{'A', 'A' + 60, 1 - 'A'}})}}) : map;
        return out;
    }

    static FontData words(std::size_t size, const std::vector<std::pair<std::size_t, unsigned>>& values) {
        FontData out(size);
        for (const auto& [at, value] : values) {
            out[at] = static_cast<std::uint8_t>(value >> 8);
            out[at + 1] = static_cast<std::uint8_t>(value);
        }
        return out;
    }

    static FontData join(const std::map<std::string, FontData>& tables) {
        FontData out;
        put32(out, 0x00010000);
        put16(out, static_cast<unsigned>(tables.size()));
        out.resize(12);
        std::size_t offset = 12 + 16 * tables.size();
        for (const auto& [name, bytes] : tables) {
            out.insert(out.end(), name.begin(), name.end());
            put32(out, 0);
            put32(out, static_cast<std::uint32_t>(offset));
            put32(out, static_cast<std::uint32_t>(bytes.size()));
            offset += bytes.size();
        }
        for (const auto& [name, bytes] : tables) out.insert(out.end(), bytes.begin(), bytes.end());
        return out;
    }

    FontData file() const { return join(tables()); }

    std::vector<FontData> glyphs;
    FontData map;

private:
    static FontData header(int contours) {
        FontData out;
        put16(out, static_cast<unsigned>(contours) & 0xFFFF);
        out.resize(10);
        return out;
    }

    static void putDeltas(FontData& out, const std::vector<TinyContour>& contours, int TinyPoint::*axis) {
        int last = 0;
        for (const TinyContour& contour : contours) {
            for (const TinyPoint& point : contour) {
                put16(out, static_cast<unsigned>(point.*axis - last) & 0xFFFF);
                last = point.*axis;
            }
        }
    }
};

inline TinyContour square(int low, int high) {
    return {{low, low}, {low, high}, {high, high}, {high, low}};
}

// .notdef is a hollow box; "A" a square, "B" a ring of curves without any point on it, "C" a blank.
inline TinyFont makeTinyFont() {
    TinyFont font;
    font.addOutline({square(0, 400), {{100, 100}, {300, 100}, {300, 300}, {100, 300}}});
    font.addOutline({square(0, 500)});
    font.addOutline({{{0, 0, false}, {0, 600, false}, {600, 600, false}, {600, 0, false}}});
    font.addBlank();
    return font;
}

}  // namespace kelmora
