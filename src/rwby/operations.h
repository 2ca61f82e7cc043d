#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "rwby/opcode.h"
#include "rwby/value.h"

// What the operators do to values. Failures are std::runtime_error with the bare message; whoever runs the
// program puts its place in front.
namespace vesper::ruby {

// Whole results become integers.
RubyValue numericResult(double value);

RubyValue add(const RubyValue& a, const RubyValue& b);
RubyValue subtract(const RubyValue& a, const RubyValue& b);
RubyValue multiply(const RubyValue& a, const RubyValue& b);
RubyValue divide(const RubyValue& a, const RubyValue& b);
RubyValue modulo(const RubyValue& a, const RubyValue& b);
RubyValue negate(const RubyValue& value);

// Below 0, 0 or above for a before, beside or behind b; a NaN is beside nothing and gives `unordered`.
constexpr int unordered = 2;
int compareOrdered(const RubyValue& a, const RubyValue& b);

// Add to GreaterEqual, And and Or of the instructions.
RubyValue applyBinary(OpCode op, const RubyValue& a, const RubyValue& b);

RubyValue indexValue(const RubyValue& container, const RubyValue& index);
// Stores into an array or a map. For a string the result is the changed text; else nil.
RubyValue setIndexValue(const RubyValue& container, const RubyValue& index, const RubyValue& value);

// The element's place, for one that is to be written: the array grows with nil up to it.
RubyValue& arrayElement(RubyItems& items, std::int64_t index);

inline std::int64_t wrappedAdd(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
inline std::int64_t wrappedSubtract(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}
inline std::int64_t wrappedMultiply(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}
// The sign of the dividend; the divisor is not 0.
inline std::int64_t integerModulo(std::int64_t a, std::int64_t b) {
    // Narrow division takes half the time of a wide one.
    if (((a | b) >> 32) == 0)
        return static_cast<std::int64_t>(static_cast<std::uint32_t>(a) % static_cast<std::uint32_t>(b));
    return b == -1 ? 0 : a % b;
}

// A map's key as look-up wants it, without making text of a number.
class MapKey {
public:
    explicit MapKey(const RubyValue& value);
    MapKey(const MapKey&) = delete;
    MapKey& operator=(const MapKey&) = delete;

    const StringObject* object() const { return object_; }  // null for a key that is no string
    std::string_view text() const { return text_; }

private:
    const StringObject* object_ = nullptr;
    std::string_view text_;
    std::array<char, 32> digits_;
};
std::string valueKeyString(const RubyValue& value);

const RubyValue* findInMap(const RubyValue& map, const RubyValue& key);
void setInMap(const RubyValue& map, const RubyValue& key, RubyValue value);

}  // namespace vesper::ruby
