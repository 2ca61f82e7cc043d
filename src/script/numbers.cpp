#include "script/numbers.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace kelmora {

std::int32_t saturatingInt(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 2147483648.0) return std::numeric_limits<std::int32_t>::max();
    if (value < -2147483648.0) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

std::int32_t toInt(const Variable& value) {
    switch (value.type()) {
        case VarType::Int:
            return value.intValue();
        case VarType::Float:
            return saturatingInt(static_cast<double>(value.floatValue()));
        case VarType::Bool:
            return value.boolValue() ? 1 : 0;
        default:
            throw std::runtime_error("Expected a numeric value");
    }
}

double toDouble(const Variable& value) {
    switch (value.type()) {
        case VarType::Int:
            return value.intValue();
        case VarType::Float:
            return static_cast<double>(value.floatValue());
        case VarType::Bool:
            return value.boolValue() ? 1.0 : 0.0;
        default:
            throw std::runtime_error("Expected a numeric value");
    }
}

bool parseIntStrict(std::string_view text, std::int32_t& value) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

bool parseFloatStrict(const std::string& text, float& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtof(text.c_str(), &end);
    return errno != ERANGE && end == text.c_str() + text.size();
}

Variable keyValueFromText(StringObject& text) {
    std::int32_t whole = 0;
    if (parseIntStrict(text.text(), whole)) return Variable::integer(whole);
    float fraction = 0;
    if (parseFloatStrict(text.text(), fraction)) return Variable::number(fraction);
    return Variable::string(&text);
}

bool isWholeIndex(const Variable& key, std::int64_t& index) {
    if (key.isInt()) {
        index = key.intValue();
        return true;
    }
    if (!key.isFloat()) return false;
    const float value = key.floatValue();
    if (!(std::fabs(value) <= 2147483648.0f) || std::trunc(value) != value) return false;
    index = static_cast<std::int64_t>(value);
    return true;
}

}  // namespace kelmora
