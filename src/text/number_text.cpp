#include "text/number_text.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kelmora {

std::string integerText(std::int64_t value) {
    return std::to_string(value);
}

std::string floatText(double value) {
    if (std::isnan(value)) return "nan";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.14g", value);
    return text.data();
}

}  // namespace kelmora
