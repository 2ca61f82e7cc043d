#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "font/tiny_font.h"

namespace kelmora {

// The program of a glyph, from numbers and commands.
class Program {
public:
    Program& n(int value) {
        if (value >= -107 && value <= 107) {
            bytes += static_cast<char>(value + 139);
        } else if (value >= 108 && value <= 1131) {
            value -= 108;
            bytes += static_cast<char>(247 + value / 256);
            bytes += static_cast<char>(value % 256);
        } else if (value <= -108 && value >= -1131) {
            value = -value - 108;
            bytes += static_cast<char>(251 + value / 256);
            bytes += static_cast<char>(value % 256);
        } else {
            bytes += '\xFF';
            for (int shift = 24; shift >= 0; shift -= 8)
                bytes += static_cast<char>(static_cast<std::uint32_t>(value) >> shift);
        }
        return *this;
    }
    Program& op(std::initializer_list<int> values, int command) {
        for (const int value : values) n(value);
        bytes += static_cast<char>(command);
        return *this;
    }
    Program& escape(std::initializer_list<int> values, int command) {
        op(values, 12);
        bytes += static_cast<char>(command);
        return *this;
    }
    // From the current point to the right and up; ends where it began.
    Program& box(int width, int height) { return op({height}, 7).op({width}, 6).op({-height}, 7).op({}, 9); }

    std::string bytes;
};

// A Type 1 file made in memory: 1000 units to the em, from 200 below the baseline to 800 above.
class TinyType1 {
public:
    static std::string encrypt(const std::string& plain, unsigned key) {
        std::string out;
        for (const char c : plain) {
            const auto cipher = static_cast<unsigned char>(static_cast<unsigned char>(c) ^ (key >> 8));
            key = ((cipher + key) * 52845 + 22719) & 0xFFFF;
            out += static_cast<char>(cipher);
        }
        return out;
    }

    std::string string(const std::string& program) const {
        const std::string plain =
            lenIV < 0 ? program : std::string(static_cast<std::size_t>(lenIV), 'x') + program;
        const std::string stored = lenIV < 0 ? plain : encrypt(plain, 4330);
        return std::to_string(stored.size()) + " RD " + stored;
    }

    std::string clearPart() const {
        return "%!PS-AdobeFont-1.0: Tiny\n/FontMatrix [" + matrix + "] readonly def\n/FontBBox {" + box +
               "} readonly def\ncurrentfile eexec\n";
    }
    std::string privatePart() const {
        std::string out = "dup /Private 8 dict dup begin\n";
        if (lenIV != 4) out += "/lenIV " + std::to_string(lenIV) + " def\n";
        out += "/Subrs " + std::to_string(subrs.size()) + " array\n";
        for (std::size_t i = 0; i < subrs.size(); ++i)
            out += "dup " + std::to_string(i) + " " + string(subrs[i].bytes) + " NP\n";
        out += "ND\n" + opener + " /CharStrings " + std::to_string(glyphs.size()) + " dict dup begin\n";
        for (const auto& [name, program] : glyphs) out += "/" + name + " " + string(program.bytes) + " ND\n";
        return out + "end\nend\nreadonly put\nmark currentfile closefile\n";
    }
    static std::string trailer() { return "\n" + std::string(64, '0') + "\ncleartomark\n"; }
    std::string secret() const { return encrypt(padding + privatePart(), 55665); }

    static FontData data(const std::string& text) { return FontData(text.begin(), text.end()); }
    // Text with a binary or a hexadecimal private part, and segmented binary.
    FontData raw() const { return data(clearPart() + secret() + trailer()); }
    FontData hexadecimal() const {
        std::string digits;
        for (const char c : secret()) {
            constexpr const char* figures = "0123456789aBcDeF";
            const auto byte = static_cast<unsigned char>(c);
            digits += {figures[byte >> 4], figures[byte & 15]};
            if (digits.size() % 65 == 64) digits += '\n';
        }
        return data(clearPart() + digits + trailer());
    }
    FontData segmented() const {
        const std::string whole = secret();
        return data(segment(1, clearPart()) + segment(2, whole.substr(0, 50)) + segment(2, whole.substr(50)) +
                    segment(1, trailer()) + "\x80\x03");
    }

    int lenIV = 4;
    std::string padding = "wxyz";    // the random bytes in front of the private part
    std::string opener = "2 index";  // what stands before the dictionary of glyphs
    std::string matrix = "0.001 0 0 0.001 0 0";
    std::string box = "-50 -200 1000 800";
    std::vector<Program> subrs;
    std::vector<std::pair<std::string, Program>> glyphs;

private:
    static std::string segment(int kind, const std::string& bytes) {
        std::string out = {'\x80', static_cast<char>(kind)};
        for (unsigned shift = 0; shift < 32; shift += 8) out += static_cast<char>(bytes.size() >> shift);
        return out + bytes;
    }
};

// .notdef is a box of 300, "A" a box of 500 from the left edge 100, "acute" a small one, and "Aacute" both;
// "B" has curves and a flex, "C" a subroutine.
inline TinyType1 makeTinyType1() {
    TinyType1 font;
    font.subrs.push_back(
        Program().n(3).escape({0}, 16).escape({}, 17).escape({}, 17).escape({}, 33).op({}, 11));
    font.subrs.push_back(Program().escape({0, 1}, 16).op({}, 11));
    font.subrs.push_back(Program().escape({0, 2}, 16).op({}, 11));
    font.subrs.push_back(Program().op({}, 11));
    font.subrs.push_back(Program().box(400, 400).op({}, 11));
    font.glyphs = {
        {".notdef", Program().op({0, 350}, 13).box(300, 300).op({}, 14)},
        {"space", Program().op({0, 250}, 13).op({}, 14)},
        {"A", Program().op({100, 700}, 13).op({0, 20}, 1).box(500, 500).op({}, 14)},
        {"acute", Program().op({50, 300}, 13).op({600}, 4).box(100, 100).op({}, 14)},
        {"Aacute", Program().op({100, 700}, 13).escape({50, 350, 100, 65, 194}, 6)},
        // A flex of depth 20 along the top of a box from 0 to 400.
        {"B", Program()
                  .op({0, 640}, 13)
                  .op({400}, 7)
                  .op({1}, 10)
                  .op({200, 0}, 21)
                  .op({2}, 10)
                  .op({-100, 0}, 21)
                  .op({2}, 10)
                  .op({50, 20}, 21)
                  .op({2}, 10)
                  .op({50, 0}, 21)
                  .op({2}, 10)
                  .op({50, 0}, 21)
                  .op({2}, 10)
                  .op({50, -20}, 21)
                  .op({2}, 10)
                  .op({100, 0}, 21)
                  .op({2}, 10)
                  .op({50, 400, 400, 0}, 10)
                  .op({-200, 100, -100, 100}, 30)
                  .op({}, 9)
                  .op({}, 14)},
        {"C", Program().op({0, 500}, 13).op({4}, 10).op({}, 14)},
        {"uni0416", Program().escape({0, 0, 900, 0}, 7).op({1, 3, 2}, 5).op({}, 14)},
    };
    return font;
}

}  // namespace kelmora
