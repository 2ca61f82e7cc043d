#include "script/operators.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "script/hyper_operators.h"
#include "script/numbers.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

[[noreturn]] void throwUnsupported(std::string_view sign) {
    throw std::runtime_error("Unsupported operation '" + std::string(sign) + "' between types");
}

void requireNumeric(const Variable& left, const Variable& right, std::string_view sign) {
    if (!left.isNumeric() || !right.isNumeric()) throwUnsupported(sign);
}

// What a script may build in one string; beyond it lies a loop gone wrong.
constexpr std::size_t maximumText = std::size_t{1} << 28;

void appendText(std::string& text, std::string_view more) {
    if (more.size() > maximumText - std::min(text.size(), maximumText))
        throw std::runtime_error("String is too long");
    text += more;
}

bool anyFloat(const Variable& left, const Variable& right) {
    return left.isFloat() || right.isFloat();
}

float toFloat(const Variable& value) {
    return static_cast<float>(toDouble(value));
}

Variable wrapped(std::uint32_t bits) {
    return Variable::integer(static_cast<std::int32_t>(bits));
}
std::uint32_t bitsOf(const Variable& value) {
    return static_cast<std::uint32_t>(toInt(value));
}

// The text of a value; that of strings and integers is made without allocating.
class TextOf {
public:
    explicit TextOf(const Variable& value) {
        if (value.isString()) {
            view_ = value.text();
        } else if (value.isInt()) {
            const auto end = std::to_chars(digits_.data(), digits_.data() + digits_.size(), value.intValue());
            view_ = {digits_.data(), static_cast<std::size_t>(end.ptr - digits_.data())};
        } else {
            text_ = value.toString();
            view_ = text_;
        }
    }
    TextOf(const TextOf&) = delete;
    TextOf& operator=(const TextOf&) = delete;
    std::string_view view() const { return view_; }

private:
    std::array<char, 12> digits_;
    std::string text_;
    std::string_view view_;
};

Variable join(const Variable& left, const Variable& right) {
    const TextOf first(left);
    const TextOf second(right);
    std::string text;
    text.reserve(first.view().size() + second.view().size());
    text.append(first.view());
    appendText(text, second.view());
    return Variable::text(std::move(text));
}

Variable add(const Variable& left, const Variable& right) {
    if (left.isString() || right.isString()) return join(left, right);
    requireNumeric(left, right, "+");
    if (anyFloat(left, right)) return Variable::number(toFloat(left) + toFloat(right));
    return wrapped(bitsOf(left) + bitsOf(right));
}

Variable subtract(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "-");
    if (anyFloat(left, right)) return Variable::number(toFloat(left) - toFloat(right));
    return wrapped(bitsOf(left) - bitsOf(right));
}

Variable multiply(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "*");
    if (anyFloat(left, right)) return Variable::number(toFloat(left) * toFloat(right));
    return wrapped(bitsOf(left) * bitsOf(right));
}

Variable divide(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "/");
    const double divisor = toDouble(right);
    if (divisor == 0.0) throw std::runtime_error("Division by zero");
    return Variable::number(static_cast<float>(toDouble(left) / divisor));
}

Variable integerDivide(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "\\");
    const std::int32_t divisor = toInt(right);
    if (divisor == 0) throw std::runtime_error("Division by zero");
    if (divisor == -1) return wrapped(0u - bitsOf(left));  // the one quotient that overflows wraps
    return Variable::integer(toInt(left) / divisor);
}

Variable remainder(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "%");
    if (anyFloat(left, right)) {
        if (toDouble(right) == 0.0) throw std::runtime_error("Division by zero");
        return Variable::number(std::fmod(toFloat(left), toFloat(right)));
    }
    const std::int32_t divisor = toInt(right);
    if (divisor == 0) throw std::runtime_error("Division by zero");
    if (divisor == -1) return Variable::integer(0);
    return Variable::integer(toInt(left) % divisor);
}

bool fitsInt(std::int64_t value) {
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
}

// Repeated squaring; false as soon as an intermediate leaves 32 bits.
bool integerPower(std::int32_t base, std::int32_t exponent, std::int32_t& result) {
    std::int64_t product = 1;
    std::int64_t square = base;
    for (;;) {
        if ((exponent & 1) != 0) {
            product *= square;
            if (!fitsInt(product)) return false;
        }
        exponent >>= 1;
        if (exponent == 0) break;
        square *= square;
        if (!fitsInt(square)) return false;
    }
    result = static_cast<std::int32_t>(product);
    return true;
}

Variable power(const Variable& left, const Variable& right) {
    requireNumeric(left, right, "^");
    const bool integers = left.isInt() && right.isInt() && right.intValue() >= 0;
    if (std::int32_t exact = 0; integers && integerPower(left.intValue(), right.intValue(), exact))
        return Variable::integer(exact);
    const double result = std::pow(toDouble(left), toDouble(right));
    if (!std::isfinite(result)) throw std::runtime_error("Invalid exponentiation result");
    if (integers) {
        const double rounded = std::round(result);
        if (std::fabs(result - rounded) <= 1e-6 && rounded >= -2147483648.0 && rounded <= 2147483647.0)
            return Variable::integer(static_cast<std::int32_t>(rounded));
    }
    return Variable::number(static_cast<float>(result));
}

}  // namespace

bool variablesEqual(const Variable& a, const Variable& b) {
    if (a.isInt() && b.isInt()) return a.intValue() == b.intValue();
    if (a.isNumeric() && b.isNumeric()) return toDouble(a) == toDouble(b);
    if (a.type() != b.type()) return false;
    switch (a.type()) {
        case VarType::Not:
            return true;
        case VarType::String:
            return a.identity() == b.identity() || a.text() == b.text();
        case VarType::Raw:
            return a.rawBytes() == b.rawBytes();
        case VarType::Pointer:
            return a.pointerValue() == b.pointerValue();
        default:
            return a.identity() == b.identity();
    }
}

int compareVariables(const Variable& a, const Variable& b) {
    if (a.isNumeric() && b.isNumeric()) {
        const double left = toDouble(a);
        const double right = toDouble(b);
        return left < right ? -1 : (left > right ? 1 : 0);
    }
    if (a.isString() && b.isString()) return a.text().compare(b.text());
    throw std::runtime_error("Cannot compare " + std::string(typeName(a.type())) + " with " +
                             std::string(typeName(b.type())));
}

Variable performOperation(const Variable& left, TokenKind operation, const Variable& right) {
    switch (operation) {
        case TokenKind::Plus:
            return add(left, right);
        case TokenKind::Minus:
            return subtract(left, right);
        case TokenKind::Multiply:
            return multiply(left, right);
        case TokenKind::Divide:
            return divide(left, right);
        case TokenKind::IntegerDivide:
            return integerDivide(left, right);
        case TokenKind::Remainder:
            return remainder(left, right);
        case TokenKind::Power:
            return power(left, right);
        case TokenKind::Tetration:
            return tetration(left, right);
        case TokenKind::Pentation:
            return pentation(left, right);
        case TokenKind::Equal:
            return Variable::boolean(variablesEqual(left, right));
        case TokenKind::NotEqual:
            return Variable::boolean(!variablesEqual(left, right));
        case TokenKind::Less:
            return Variable::boolean(compareVariables(left, right) < 0);
        case TokenKind::Greater:
            return Variable::boolean(compareVariables(left, right) > 0);
        case TokenKind::LessEqual:
            return Variable::boolean(compareVariables(left, right) <= 0);
        case TokenKind::GreaterEqual:
            return Variable::boolean(compareVariables(left, right) >= 0);
        default:
            throw std::runtime_error("Unsupported operation");
    }
}

void appendInPlace(Variable& target, const Variable& value) {
    if (!value.isString()) return appendText(target.editableText(), TextOf(value).view());
    const Variable kept = value;  // which may be the target itself
    appendText(target.editableText(), kept.text());
}

std::int32_t arrayLength(const Variable& value) {
    switch (value.type()) {
        case VarType::String:
            return static_cast<std::int32_t>(value.text().size());
        case VarType::Array:
            return static_cast<std::int32_t>(value.items().size());
        case VarType::Table:
            return static_cast<std::int32_t>(value.table().numericLength());
        default:
            throw std::runtime_error("len(x) expects an array, table, or string");
    }
}

std::string keyToString(const Variable& key) {
    switch (key.type()) {
        case VarType::String:
            return key.text();
        case VarType::Int:
        case VarType::Float:
        case VarType::Bool:
            return key.toString();
        default:
            throw std::runtime_error("Table key must be string, number, or bool");
    }
}

}  // namespace kelmora
