#include "rwby/operations.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "base/numeric_result.h"
#include "rwby/map_object.h"
#include "text/number_text.h"

namespace vesper::ruby {
namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

[[noreturn]] void fail(const char* message) {
    throw std::runtime_error(message);
}

void requireNumbers(const RubyValue& a, const RubyValue& b, const char* message) {
    if (!a.isNumeric() || !b.isNumeric()) fail(message);
}

bool bothIntegers(const RubyValue& a, const RubyValue& b) {
    return a.isInteger() && b.isInteger();
}

RubyValue joinText(const RubyValue& a, const RubyValue& b) {
    if (!a.isString())
        return RubyValue::string(StringObject::concatenate(a.toString(), b.stringObject().text()));
    if (b.isString())
        return RubyValue::string(StringObject::concatenate(a.stringObject(), b.stringObject().text()));
    if (b.isInteger()) {
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), b.integerValue()).ptr;
        return RubyValue::string(
            StringObject::concatenate(a.stringObject(), std::string_view(digits.data(), end)));
    }
    return RubyValue::string(StringObject::concatenate(a.stringObject(), b.toString()));
}

RubyValue joinArrays(const RubyItems& a, const RubyItems& b) {
    if (static_cast<std::int64_t>(a.size() + b.size()) > maximumArraySize) fail("the array is too large");
    RubyItems joined;
    joined.reserve(a.size() + b.size());
    joined.insert(joined.end(), a.begin(), a.end());
    joined.insert(joined.end(), b.begin(), b.end());
    return RubyValue::array(std::move(joined));
}

int order(bool less, bool greater) {
    return less ? -1 : greater ? 1 : 0;
}

std::int64_t elementIndex(const RubyValue& index, bool ofArray) {
    if (!index.isNumeric()) fail(ofArray ? "array index must be numeric" : "index must be numeric");
    const std::int64_t place = index.asInteger();
    if (place < 0) fail(ofArray ? "array index must be non-negative" : "index must be non-negative");
    return place;
}

std::size_t characterIndex(std::string_view text, const RubyValue& index) {
    const std::int64_t place = elementIndex(index, false);
    if (static_cast<std::uint64_t>(place) >= text.size()) fail("string index is out of range");
    return static_cast<std::size_t>(place);
}

RubyValue replaceCharacter(std::string_view text, const RubyValue& index, const RubyValue& value) {
    const std::size_t place = characterIndex(text, index);
    if (!value.isString() || value.stringObject().size() == 0)
        fail("string assignment requires a non-empty replacement");
    std::string changed(text);
    changed[place] = value.stringObject().text()[0];
    return RubyValue::text(changed);
}

}  // namespace

RubyValue numericResult(double value) {
    // Nearly all results can be told without rounding.
    if (std::fabs(value) < 4503599627370496.0) {
        const auto whole = static_cast<std::int64_t>(value);
        const double rest = std::fabs(value - static_cast<double>(whole));
        if (rest == 0) return RubyValue::integer(whole);
        if (rest > epsilon && rest < 1 - 2 * epsilon) return RubyValue::number(value);
    }
    std::int64_t whole = 0;
    return kelmora::isWholeResult(value, whole) ? RubyValue::integer(whole) : RubyValue::number(value);
}

RubyValue add(const RubyValue& a, const RubyValue& b) {
    if (bothIntegers(a, b)) return RubyValue::integer(wrappedAdd(a.integerValue(), b.integerValue()));
    if (a.isString() || b.isString()) return joinText(a, b);
    if (a.isArray() && b.isArray()) return joinArrays(a.items(), b.items());
    requireNumbers(a, b, "operator '+' expects numbers, strings, or arrays");
    return numericResult(a.numericValue() + b.numericValue());
}

RubyValue subtract(const RubyValue& a, const RubyValue& b) {
    if (bothIntegers(a, b)) return RubyValue::integer(wrappedSubtract(a.integerValue(), b.integerValue()));
    requireNumbers(a, b, "operator '-' expects numeric values");
    return numericResult(a.numericValue() - b.numericValue());
}

RubyValue multiply(const RubyValue& a, const RubyValue& b) {
    if (bothIntegers(a, b)) return RubyValue::integer(wrappedMultiply(a.integerValue(), b.integerValue()));
    requireNumbers(a, b, "operator '*' expects numeric values");
    return numericResult(a.numericValue() * b.numericValue());
}

RubyValue divide(const RubyValue& a, const RubyValue& b) {
    requireNumbers(a, b, "operator '/' expects numeric values");
    const double divisor = b.numericValue();
    if (std::fabs(divisor) <= epsilon) fail("division by zero");
    return numericResult(a.numericValue() / divisor);
}

RubyValue modulo(const RubyValue& a, const RubyValue& b) {
    requireNumbers(a, b, "operator '%' expects numeric values");
    if (std::fabs(b.numericValue()) <= epsilon) fail("modulo by zero");
    if (bothIntegers(a, b)) return RubyValue::integer(integerModulo(a.integerValue(), b.integerValue()));
    return numericResult(std::fmod(a.numericValue(), b.numericValue()));
}

RubyValue negate(const RubyValue& value) {
    if (value.isInteger()) return RubyValue::integer(wrappedSubtract(0, value.integerValue()));
    if (!value.isFloat()) fail("unary '-' expects a numeric value");
    return numericResult(-value.floatValue());
}

int compareOrdered(const RubyValue& a, const RubyValue& b) {
    if (bothIntegers(a, b))
        return order(a.integerValue() < b.integerValue(), a.integerValue() > b.integerValue());
    if (a.isNumeric() && b.isNumeric()) {
        const double x = a.numericValue();
        const double y = b.numericValue();
        return std::isnan(x) || std::isnan(y) ? unordered : order(x<y, x> y);
    }
    if (!a.isString() || !b.isString()) fail("ordered comparisons require matching numeric or string values");
    const int compared = a.stringObject().text().compare(b.stringObject().text());
    return order(compared<0, compared> 0);
}

RubyValue applyBinary(OpCode op, const RubyValue& a, const RubyValue& b) {
    switch (op) {
        case OpCode::Add:
            return add(a, b);
        case OpCode::Subtract:
            return subtract(a, b);
        case OpCode::Multiply:
            return multiply(a, b);
        case OpCode::Divide:
            return divide(a, b);
        case OpCode::Modulo:
            return modulo(a, b);
        case OpCode::Equal:
            return RubyValue::boolean(valuesEqual(a, b));
        case OpCode::NotEqual:
            return RubyValue::boolean(!valuesEqual(a, b));
        case OpCode::Less:
            return RubyValue::boolean(compareOrdered(a, b) == -1);
        case OpCode::LessEqual:
            return RubyValue::boolean(compareOrdered(a, b) <= 0);
        case OpCode::Greater:
            return RubyValue::boolean(compareOrdered(a, b) == 1);
        case OpCode::GreaterEqual: {
            const int compared = compareOrdered(a, b);
            return RubyValue::boolean(compared == 0 || compared == 1);
        }
        case OpCode::And:
            return RubyValue::boolean(a.isTruthy() && b.isTruthy());
        default:
            return RubyValue::boolean(a.isTruthy() || b.isTruthy());
    }
}

RubyValue indexValue(const RubyValue& container, const RubyValue& index) {
    switch (container.type()) {
        case RubyValueType::Array: {
            const RubyItems& items = container.items();
            const auto place = static_cast<std::uint64_t>(elementIndex(index, true));
            return place < items.size() ? items[static_cast<std::size_t>(place)] : RubyValue();
        }
        case RubyValueType::Map: {
            const RubyValue* value = findInMap(container, index);
            return value ? *value : RubyValue();
        }
        case RubyValueType::String: {
            const std::string_view text = container.stringObject().text();
            return RubyValue::character(text[characterIndex(text, index)]);
        }
        default:
            fail("indexing expects an array, map, or string");
    }
}

RubyValue& arrayElement(RubyItems& items, std::int64_t index) {
    if (index >= maximumArraySize) fail("the array is too large");
    const auto place = static_cast<std::size_t>(index);
    if (place >= items.size()) {
        if (place >= items.capacity()) items.reserve(std::max(place + 1, items.size() * 2));
        items.resize(place + 1);
    }
    return items[place];
}

RubyValue setIndexValue(const RubyValue& container, const RubyValue& index, const RubyValue& value) {
    switch (container.type()) {
        case RubyValueType::Array:
            arrayElement(container.items(), elementIndex(index, true)) = value;
            return {};
        case RubyValueType::Map:
            setInMap(container, index, value);
            return {};
        case RubyValueType::String:
            return replaceCharacter(container.stringObject().text(), index, value);
        default:
            fail("indexed assignment expects an array, map, or string");
    }
}

MapKey::MapKey(const RubyValue& value) {
    switch (value.type()) {
        case RubyValueType::String:
            object_ = &value.stringObject();
            text_ = object_->text();
            break;
        case RubyValueType::Integer: {
            char* begin = digits_.data();
            const auto end = std::to_chars(begin, begin + digits_.size(), value.integerValue()).ptr;
            text_ = std::string_view(begin, end);
            break;
        }
        case RubyValueType::Float: {
            const std::string text = kelmora::floatText(value.floatValue());
            text_ = std::string_view(digits_.data(), text.copy(digits_.data(), digits_.size()));
            break;
        }
        case RubyValueType::Boolean:
            text_ = value.booleanValue() ? "true" : "false";
            break;
        default:
            fail("unsupported map key type");
    }
}

std::string valueKeyString(const RubyValue& value) {
    return std::string(MapKey(value).text());
}

const RubyValue* findInMap(const RubyValue& map, const RubyValue& key) {
    const MapKey wanted(key);
    return wanted.object() ? map.mapObject().find(*wanted.object()) : map.mapObject().find(wanted.text());
}

void setInMap(const RubyValue& map, const RubyValue& key, RubyValue value) {
    if (key.isString()) {
        map.mapObject().set(key.stringObject(), std::move(value));
    } else {
        map.mapObject().set(MapKey(key).text(), std::move(value));
    }
}

}  // namespace vesper::ruby
