#include "font/truetype_outlines.h"

#include <span>

#include "base/byte_reader.h"

namespace kelmora {
namespace {

constexpr int deepestComposite = 11;
// Nested composites multiply, so a small damaged file could name billions of parts.
constexpr int maximumComponents = 4096;
constexpr std::size_t maximumPoints = std::size_t{1} << 18;
constexpr std::size_t glyphHeader = 10;

namespace simple {
constexpr std::uint8_t onCurve = 1;
constexpr std::uint8_t shortX = 2;
constexpr std::uint8_t shortY = 4;
constexpr std::uint8_t repeat = 8;
constexpr std::uint8_t sameOrPositiveX = 16;
constexpr std::uint8_t sameOrPositiveY = 32;
}  // namespace simple

namespace composite {
constexpr std::uint16_t wordArguments = 0x0001;
constexpr std::uint16_t argumentsAreOffsets = 0x0002;
constexpr std::uint16_t hasScale = 0x0008;
constexpr std::uint16_t moreComponents = 0x0020;
constexpr std::uint16_t hasTwoScales = 0x0040;
constexpr std::uint16_t hasTwoByTwo = 0x0080;
constexpr std::uint16_t hasInstructions = 0x0100;
constexpr std::uint16_t scaledOffset = 0x0800;
}  // namespace composite

struct Component {
    std::uint16_t flags = 0;
    std::uint16_t glyph = 0;
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double dx = 0;
    double dy = 0;
};

bool readSigned(ByteReader& reader, double& out) {
    std::uint16_t bits = 0;
    if (!reader.readU16Big(bits)) return false;
    out = static_cast<std::int16_t>(bits);
    return true;
}

// 2 bits of whole part, 14 of fraction.
bool readFraction(ByteReader& reader, double& out) {
    if (!readSigned(reader, out)) return false;
    out *= 1.0 / 16384;
    return true;
}

bool readOffset(ByteReader& reader, bool words, double& out) {
    if (words) return readSigned(reader, out);
    std::uint8_t bits = 0;
    if (!reader.readU8(bits)) return false;
    out = static_cast<std::int8_t>(bits);
    return true;
}

bool readMatrix(ByteReader& reader, Component& part) {
    if (part.flags & composite::hasScale) {
        if (!readFraction(reader, part.a)) return false;
        part.d = part.a;
        return true;
    }
    if (part.flags & composite::hasTwoScales)
        return readFraction(reader, part.a) && readFraction(reader, part.d);
    if (part.flags & composite::hasTwoByTwo)
        return readFraction(reader, part.a) && readFraction(reader, part.b) && readFraction(reader, part.c) &&
               readFraction(reader, part.d);
    return true;
}

bool readComponent(ByteReader& reader, Component& part) {
    if (!reader.readU16Big(part.flags) || !reader.readU16Big(part.glyph)) return false;
    const bool words = (part.flags & composite::wordArguments) != 0;
    if (!readOffset(reader, words, part.dx) || !readOffset(reader, words, part.dy)) return false;
    if (!(part.flags & composite::argumentsAreOffsets)) return false;
    if (!readMatrix(reader, part)) return false;
    if (part.flags & composite::scaledOffset) {
        const AffineTransform matrix{part.a, part.b, part.c, part.d, 0, 0};
        const Point offset = matrix.turn(part.dx, part.dy);
        part.dx = offset.x;
        part.dy = offset.y;
    }
    return true;
}

AffineTransform compose(const AffineTransform& parent, const Component& part) {
    const Point columnX = parent.turn(part.a, part.c);
    const Point columnY = parent.turn(part.b, part.d);
    const Point origin = parent.apply(part.dx, part.dy);
    return {columnX.x, columnY.x, columnX.y, columnY.y, origin.x, origin.y};
}

constexpr unsigned bitsOf(unsigned flags, unsigned first, unsigned second) {
    return (flags / first & 1) | (flags / second & 1) << 1;
}

// Coordinates of the points, each as its change: a byte with its sign in a flag, nothing, or a word.
class DeltaReader {
public:
    DeltaReader(std::span<const std::uint8_t> bytes, std::size_t at) : bytes_(bytes), at_(at) {}

    // The bits of `flags` are 1 for a byte and 2 for its positive sign, or for no change.
    bool read(unsigned flags, std::uint16_t& total) {
        constexpr std::uint8_t lengths[] = {2, 1, 0, 1};
        const std::size_t length = lengths[flags];
        const std::size_t left = bytes_.size() - at_;
        if (length > left) return false;
        // No branches on what the next point is like: nobody could foresee them.
        const unsigned high = left > 0 ? bytes_[at_] : 0;
        const unsigned word = high << 8 | (left > 1 ? bytes_[at_ + 1] : 0);
        const unsigned deltas[] = {word, 0 - high, 0, high};
        total = static_cast<std::uint16_t>(total + deltas[flags]);
        at_ += length;
        return true;
    }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t at_;
};

}  // namespace

void GlyphOutlines::bind(FontBytes file, std::size_t glyphData, const std::vector<std::uint32_t>& offsets) {
    file_ = file;
    glyphData_ = glyphData;
    offsets_ = &offsets;
}

bool GlyphOutlines::append(std::uint16_t glyph, const AffineTransform& transform, OutlineBuilder& builder) {
    componentsLeft_ = maximumComponents;
    pointsLeft_ = maximumPoints;
    return append_glyph_outline(glyph, transform, builder, 0);
}

bool GlyphOutlines::append_glyph_outline(std::uint16_t glyph, const AffineTransform& transform,
                                         OutlineBuilder& builder, int depth) {
    if (std::size_t{glyph} + 1 >= offsets_->size()) return true;
    const std::size_t start = (*offsets_)[glyph];
    const std::size_t end = (*offsets_)[glyph + std::size_t{1}];
    if (start >= end) return true;
    const std::size_t at = glyphData_ + start;
    if (!file_.has(at, glyphHeader)) return false;
    const std::int16_t contours = file_.i16(at);
    if (contours < 0) return appendComposite(at, glyphData_ + end, transform, builder, depth);
    if (contours == 0) return true;
    return appendSimple(at, static_cast<std::size_t>(contours), transform, builder);
}

bool GlyphOutlines::appendComposite(std::size_t at, std::size_t end, const AffineTransform& transform,
                                    OutlineBuilder& builder, int depth) {
    if (depth > deepestComposite) return false;
    ByteReader reader(file_.from(at));
    if (!reader.skip(glyphHeader)) return false;
    for (;;) {
        Component part;
        if (--componentsLeft_ < 0 || !readComponent(reader, part)) return false;
        if (!append_glyph_outline(part.glyph, compose(transform, part), builder, depth + 1)) return false;
        if (part.flags & composite::hasInstructions) {
            std::uint16_t length = 0;
            if (!reader.readU16Big(length) || !reader.skip(length)) return false;
        }
        if (!(part.flags & composite::moreComponents)) return true;
        if (at + reader.position() >= end) return false;
    }
}

bool GlyphOutlines::appendSimple(std::size_t at, std::size_t contours, const AffineTransform& transform,
                                 OutlineBuilder& builder) {
    const std::size_t ends = at + glyphHeader;
    if (!file_.has(ends, contours * 2 + 2)) return false;
    const auto endOf = [&](std::size_t contour) { return file_.u16(ends + contour * 2); };
    const std::size_t count = (endOf(contours - 1) + std::size_t{1}) % 65536;
    const std::size_t instructions = file_.u16(ends + contours * 2);
    if (count > pointsLeft_) return false;
    pointsLeft_ -= count;
    if (!readPoints(file_, ends + contours * 2 + 2 + instructions, count)) return false;
    std::size_t first = 0;
    for (std::size_t i = 0; i < contours; ++i) {
        const std::size_t last = endOf(i);
        if (last < first || last >= count) return false;
        listContour(first, last, transform);
        if (!drawContour(builder)) return false;
        first = last + 1;
    }
    return true;
}

bool GlyphOutlines::readPoints(FontBytes data, std::size_t at, std::size_t count) {
    if (at > data.size()) return false;
    ByteReader reader(data.from(at));
    points_.resize(count);
    for (std::size_t i = 0; i < count;) {
        std::uint8_t flags = 0;
        std::uint8_t repeats = 0;
        if (!reader.readU8(flags)) return false;
        if ((flags & simple::repeat) && !reader.readU8(repeats)) return false;
        for (unsigned copies = repeats + 1u; copies > 0 && i < count; --copies) points_[i++].flags = flags;
    }
    DeltaReader deltas(data.from(at), reader.position());
    std::uint16_t x = 0;
    for (RawPoint& point : points_) {
        if (!deltas.read(bitsOf(point.flags, simple::shortX, simple::sameOrPositiveX), x)) return false;
        point.x = static_cast<std::int16_t>(x);
    }
    std::uint16_t y = 0;
    for (RawPoint& point : points_) {
        if (!deltas.read(bitsOf(point.flags, simple::shortY, simple::sameOrPositiveY), y)) return false;
        point.y = static_cast<std::int16_t>(y);
    }
    return true;
}

// Points of the contour with the on-curve points that the file leaves out between two off-curve ones; it
// begins and ends at the same on-curve point.
void GlyphOutlines::listContour(std::size_t first, std::size_t last, const AffineTransform& transform) {
    const auto isOn = [](const RawPoint& point) { return (point.flags & simple::onCurve) != 0; };
    const auto between = [&](const RawPoint& a, const RawPoint& b) {
        return ContourPoint{transform.apply((a.x + b.x) * 0.5, (a.y + b.y) * 0.5), true};
    };
    contour_.clear();
    const RawPoint& head = points_[first];
    const RawPoint& tail = points_[last];
    if (!isOn(head))
        contour_.push_back(isOn(tail) ? ContourPoint{transform.apply(tail.x, tail.y), true}
                                      : between(tail, head));
    for (std::size_t i = first; i <= last; ++i) {
        const RawPoint& point = points_[i];
        const RawPoint& next = i == last ? head : points_[i + 1];
        contour_.push_back({transform.apply(point.x, point.y), isOn(point)});
        if (!isOn(point) && !isOn(next)) contour_.push_back(between(point, next));
    }
    contour_.push_back({contour_.front().place, true});
}

bool GlyphOutlines::drawContour(OutlineBuilder& builder) const {
    builder.move_to(contour_.front().place);
    for (std::size_t i = 1; i < contour_.size(); ++i) {
        if (contour_[i].onCurve) {
            builder.line_to(contour_[i].place);
        } else if (i + 1 < contour_.size()) {
            flatten_quadratic_recursive(builder, contour_[i - 1].place, contour_[i].place,
                                        contour_[i + 1].place, 0);
            ++i;
        }
        if (builder.segments.size() > maximumGlyphSegments) return false;
    }
    builder.close_contour();
    return true;
}

}  // namespace kelmora
