#include "script/numbers.h"

#include <cmath>
#include <stdexcept>

namespace kelmora {

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
