#pragma once

#include <optional>

#include "font/affine_transform.h"
#include "font/outline_rasteriser.h"
#include "font/type1_file.h"

namespace kelmora {

// Runs the programs of a font's glyphs. The file stays borrowed.
class CharstringRunner {
public:
    CharstringRunner(const Type1File& font, const AffineTransform& transform, OutlineBuilder& builder)
        : font_(font), transform_(transform), builder_(builder) {}

    // Draws one glyph. False when its program is malformed; the builder then holds a part of it.
    bool draw(const Charstring& program);
    // Glyph units; known once the program has said so.
    std::optional<double> advance() const { return advance_; }

private:
    enum class Outcome { Running, Finished, Failed };

    Outcome run(const Charstring& program, int depth);
    Outcome runCommand(unsigned command, int depth);
    Outcome runEscape(unsigned command);
    bool readNumber(const Charstring& program, std::size_t& at, unsigned first);
    Outcome callSubr(int depth);
    bool callOtherSubr();
    bool endFlex(const std::vector<double>& arguments);
    void setBearing(const Point& bearing, double width);
    bool drawAccented();
    bool drawPart(double code, const Point& origin);

    bool take(std::size_t count);
    void moveBy(double dx, double dy);
    void lineBy(double dx, double dy);
    void curveBy(const Point& first, const Point& second, const Point& third);
    void curveTo(const Point& first, const Point& second, const Point& third);
    void beginContour();
    Point place(const Point& point) const { return transform_.apply(point.x, point.y); }

    const Type1File& font_;
    AffineTransform transform_;
    OutlineBuilder& builder_;
    std::vector<double> stack_;
    std::vector<double> operands_;  // of the command that runs
    std::vector<double> returned_;  // left by other subroutines for `pop`
    std::vector<Point> flexPoints_;
    Point flexStart_;
    bool inFlex_ = false;
    Point current_;
    Point origin_;
    Point bearing_;
    std::optional<double> advance_;
    bool isPart_ = false;  // of an accented glyph
    int stepsLeft_ = 1 << 18;
};

}  // namespace kelmora
