#include "font/type1_charstring.h"

#include <algorithm>
#include <cmath>

#include "font/type1_glyph_names.h"

namespace kelmora {
namespace {

constexpr int deepestCall = 16;
constexpr std::size_t deepestStack = 64;

namespace command {
constexpr unsigned hstem = 1;
constexpr unsigned vstem = 3;
constexpr unsigned vmoveto = 4;
constexpr unsigned rlineto = 5;
constexpr unsigned hlineto = 6;
constexpr unsigned vlineto = 7;
constexpr unsigned rrcurveto = 8;
constexpr unsigned closepath = 9;
constexpr unsigned callsubr = 10;
constexpr unsigned finishSubr = 11;
constexpr unsigned escape = 12;
constexpr unsigned hsbw = 13;
constexpr unsigned endchar = 14;
constexpr unsigned rmoveto = 21;
constexpr unsigned hmoveto = 22;
constexpr unsigned vhcurveto = 30;
constexpr unsigned hvcurveto = 31;
}  // namespace command

namespace escaped {
constexpr unsigned dotsection = 0;
constexpr unsigned vstem3 = 1;
constexpr unsigned hstem3 = 2;
constexpr unsigned seac = 6;
constexpr unsigned sbw = 7;
constexpr unsigned div = 12;
constexpr unsigned callothersubr = 16;
constexpr unsigned pop = 17;
constexpr unsigned setcurrentpoint = 33;
}  // namespace escaped

// Numbers of the subroutines outside the font's own: three make a flex, one replaces hints.
namespace other {
constexpr int endFlex = 0;
constexpr int beginFlex = 1;
constexpr int addFlexPoint = 2;
}  // namespace other

constexpr std::size_t flexPointCount = 7;

}  // namespace

bool CharstringRunner::draw(const Charstring& program) {
    const bool finished = run(program, 0) != Outcome::Failed;
    if (builder_.open) builder_.close_contour();
    return finished;
}

CharstringRunner::Outcome CharstringRunner::run(const Charstring& program, int depth) {
    for (std::size_t at = 0; at < program.size();) {
        if (--stepsLeft_ < 0 || builder_.segments.size() > maximumGlyphSegments) return Outcome::Failed;
        const unsigned byte = program[at++];
        if (byte >= 32) {
            if (!readNumber(program, at, byte)) return Outcome::Failed;
            continue;
        }
        if (byte == command::finishSubr) return Outcome::Running;
        Outcome outcome = Outcome::Failed;
        if (byte != command::escape) {
            outcome = runCommand(byte, depth);
        } else if (at < program.size()) {
            outcome = runEscape(program[at++]);
        }
        if (outcome != Outcome::Running) return outcome;
    }
    return Outcome::Running;
}

bool CharstringRunner::readNumber(const Charstring& program, std::size_t& at, unsigned first) {
    const std::size_t size = first < 247 ? 0 : first < 255 ? 1 : 4;
    if (size > program.size() - at || stack_.size() == deepestStack) return false;
    std::uint32_t tail = 0;
    for (std::size_t i = 0; i < size; ++i) tail = tail << 8 | program[at++];
    const int lead = static_cast<int>(first);
    int value = lead - 139;
    if (first == 255) {
        value = static_cast<std::int32_t>(tail);
    } else if (first >= 251) {
        value = -(lead - 251) * 256 - static_cast<int>(tail) - 108;
    } else if (first >= 247) {
        value = (lead - 247) * 256 + static_cast<int>(tail) + 108;
    }
    stack_.push_back(value);
    return true;
}

// Most commands use the whole stack, from its bottom, and leave it empty.
bool CharstringRunner::take(std::size_t count) {
    operands_.swap(stack_);
    stack_.clear();
    return operands_.size() >= count;
}

CharstringRunner::Outcome CharstringRunner::runCommand(unsigned code, int depth) {
    if (code == command::callsubr) return callSubr(depth);
    static constexpr std::array<std::uint8_t, 32> needs = [] {
        std::array<std::uint8_t, 32> table{};
        table[command::vmoveto] = table[command::hmoveto] = 1;
        table[command::hlineto] = table[command::vlineto] = 1;
        table[command::rlineto] = table[command::rmoveto] = table[command::hsbw] = 2;
        table[command::vhcurveto] = table[command::hvcurveto] = 4;
        table[command::rrcurveto] = 6;
        return table;
    }();
    if (!take(needs[code])) return Outcome::Failed;
    const std::vector<double>& v = operands_;
    switch (code) {
        case command::hstem:
        case command::vstem:
            break;
        case command::vmoveto:
            moveBy(0, v[0]);
            break;
        case command::rlineto:
            lineBy(v[0], v[1]);
            break;
        case command::hlineto:
            lineBy(v[0], 0);
            break;
        case command::vlineto:
            lineBy(0, v[0]);
            break;
        case command::rrcurveto:
            curveBy({v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]});
            break;
        case command::closepath:
            if (builder_.open) builder_.close_contour();
            break;
        case command::hsbw:
            setBearing({v[0], 0}, v[1]);
            break;
        case command::endchar:
            return Outcome::Finished;
        case command::rmoveto:
            moveBy(v[0], v[1]);
            break;
        case command::hmoveto:
            moveBy(v[0], 0);
            break;
        case command::vhcurveto:
            curveBy({0, v[0]}, {v[1], v[2]}, {v[3], 0});
            break;
        case command::hvcurveto:
            curveBy({v[0], 0}, {v[1], v[2]}, {0, v[3]});
            break;
        default:
            return Outcome::Failed;
    }
    return Outcome::Running;
}

CharstringRunner::Outcome CharstringRunner::runEscape(unsigned code) {
    const auto outcome = [](bool worked) { return worked ? Outcome::Running : Outcome::Failed; };
    switch (code) {
        case escaped::dotsection:
        case escaped::vstem3:
        case escaped::hstem3:
            stack_.clear();
            return Outcome::Running;
        case escaped::seac:
            return take(5) && drawAccented() ? Outcome::Finished : Outcome::Failed;
        case escaped::sbw:
            if (!take(4)) return Outcome::Failed;
            setBearing({operands_[0], operands_[1]}, operands_[2]);
            return Outcome::Running;
        case escaped::div: {
            if (stack_.size() < 2 || stack_.back() == 0) return Outcome::Failed;
            const double divisor = stack_.back();
            stack_.pop_back();
            stack_.back() /= divisor;
            return Outcome::Running;
        }
        case escaped::callothersubr:
            return outcome(callOtherSubr());
        case escaped::pop:
            if (returned_.empty() || stack_.size() == deepestStack) return Outcome::Failed;
            stack_.push_back(returned_.back());
            returned_.pop_back();
            return Outcome::Running;
        // Only a flex sets the point, and to where it ended anyway.
        case escaped::setcurrentpoint:
            return outcome(take(2));
        default:
            return Outcome::Failed;
    }
}

CharstringRunner::Outcome CharstringRunner::callSubr(int depth) {
    if (stack_.empty() || depth >= deepestCall) return Outcome::Failed;
    const double index = stack_.back();
    stack_.pop_back();
    if (!(index >= 0 && index < static_cast<double>(font_.subrs.size()))) return Outcome::Failed;
    return run(font_.subrs[static_cast<std::size_t>(index)], depth + 1);
}

// The arguments, their count and the number of the subroutine lie on the stack.
bool CharstringRunner::callOtherSubr() {
    if (stack_.size() < 2) return false;
    const auto number = static_cast<int>(std::clamp(stack_.back(), -1.0, 1000.0));
    const double count = stack_[stack_.size() - 2];
    stack_.resize(stack_.size() - 2);
    if (!(count >= 0 && count <= static_cast<double>(stack_.size()))) return false;
    const auto first = stack_.end() - static_cast<std::ptrdiff_t>(count);
    const std::vector<double> arguments(first, stack_.end());
    stack_.erase(first, stack_.end());
    // What is not known here hands its arguments back, which for the replacement of hints runs the new ones.
    returned_.assign(arguments.rbegin(), arguments.rend());
    if (number == other::beginFlex) {
        inFlex_ = true;
        flexStart_ = current_;
        flexPoints_.clear();
    } else if (number == other::addFlexPoint && inFlex_) {
        if (flexPoints_.size() == flexPointCount) return false;
        flexPoints_.push_back(current_);
    } else if (number == other::endFlex) {
        return endFlex(arguments);
    }
    return true;
}

// The first of the seven points is only a reference; the others make two curves.
bool CharstringRunner::endFlex(const std::vector<double>& arguments) {
    if (!inFlex_ || arguments.size() != 3 || flexPoints_.size() != flexPointCount) return false;
    inFlex_ = false;
    returned_ = {arguments[2], arguments[1]};
    const std::vector<Point>& p = flexPoints_;
    current_ = flexStart_;
    curveTo(p[1], p[2], p[3]);
    curveTo(p[4], p[5], p[6]);
    return true;
}

void CharstringRunner::setBearing(const Point& bearing, double width) {
    if (!isPart_) advance_ = width;
    bearing_ = bearing;
    current_ = {origin_.x + bearing.x, origin_.y + bearing.y};
}

// An accent over a base letter, both by their standard codes. The accent's own bearing is taken off, since
// its place is given for its left edge.
bool CharstringRunner::drawAccented() {
    if (isPart_ || !advance_) return false;
    isPart_ = true;
    const std::vector<double> v = operands_;
    const Point accent{bearing_.x - v[0] + v[1], v[2]};
    return drawPart(v[3], {}) && drawPart(v[4], accent);
}

bool CharstringRunner::drawPart(double code, const Point& origin) {
    if (!(code >= 0 && code <= 255)) return false;
    const auto found =
        font_.charStrings.find(std::string(standardEncodingName(static_cast<std::uint8_t>(code))));
    if (found == font_.charStrings.end()) return false;
    stack_.clear();
    inFlex_ = false;
    origin_ = origin;
    return draw(found->second);
}

// Contours begin with their first line, so that a move alone leaves no trace.
void CharstringRunner::moveBy(double dx, double dy) {
    current_ = {current_.x + dx, current_.y + dy};
    if (!inFlex_ && builder_.open) builder_.close_contour();
}

void CharstringRunner::beginContour() {
    if (!builder_.open) builder_.move_to(place(current_));
}

void CharstringRunner::lineBy(double dx, double dy) {
    beginContour();
    current_ = {current_.x + dx, current_.y + dy};
    builder_.line_to(place(current_));
}

void CharstringRunner::curveBy(const Point& first, const Point& second, const Point& third) {
    const Point a{current_.x + first.x, current_.y + first.y};
    const Point b{a.x + second.x, a.y + second.y};
    curveTo(a, b, {b.x + third.x, b.y + third.y});
}

void CharstringRunner::curveTo(const Point& first, const Point& second, const Point& third) {
    beginContour();
    flatten_cubic_recursive(builder_, place(current_), place(first), place(second), place(third), 0);
    current_ = third;
}

}  // namespace kelmora
