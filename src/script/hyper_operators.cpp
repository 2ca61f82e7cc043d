#include "script/hyper_operators.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "script/numbers.h"

namespace kelmora {
namespace {

constexpr double wholeTolerance = 1e-6;

std::int32_t requireNonNegativeIntegerValue(double value, const std::string& operation,
                                            const std::string& what) {
    const std::string subject = operation + " " + what;
    if (!std::isfinite(value)) throw std::runtime_error(subject + " must be finite");
    const double rounded = std::round(value);
    if (std::fabs(value - rounded) > wholeTolerance)
        throw std::runtime_error(subject + " must be an integer");
    if (rounded < 0.0 || rounded > 2147483647.0)
        throw std::runtime_error(subject + " must be a non-negative integer");
    return static_cast<std::int32_t>(rounded);
}

[[noreturn]] void throwInvalid(const std::string& name) {
    throw std::runtime_error("Invalid " + name + " result");
}

double tetrationDouble(double base, std::int32_t height, const std::string& name) {
    if (!std::isfinite(base)) throw std::runtime_error(name + " base must be finite");
    if (base == 1.0 || height == 0) return 1.0;
    if (base == 0.0) return height % 2 != 0 ? 0.0 : 1.0;
    double value = base;
    for (std::int32_t i = 1; i < height; ++i) {
        const double next = std::pow(base, value);
        if (!std::isfinite(next)) throwInvalid(name);
        if (next == value) break;  // a fixed point: all further rounds give the same
        value = next;
    }
    return value;
}

double pentationDouble(double base, std::int32_t count) {
    if (!std::isfinite(base)) throw std::runtime_error("pentation base must be finite");
    if (count == 0) return 1.0;
    if (count == 1) return base;
    if (base == 1.0) return 1.0;
    if (base == 0.0) return count % 2 != 0 ? 0.0 : 1.0;
    double value = base;
    for (std::int32_t i = 1; i < count; ++i) {
        const std::int32_t height = requireNonNegativeIntegerValue(value, "pentation", "intermediate height");
        const double next = tetrationDouble(base, height, "tetration");
        if (next == value) break;
        value = next;
    }
    return value;
}

Variable makeHyperOperationResult(double value, bool integerResult, const std::string& name) {
    if (!std::isfinite(value)) throwInvalid(name);
    const double rounded = std::round(value);
    if (integerResult && std::fabs(value - rounded) <= wholeTolerance && rounded >= -2147483648.0 &&
        rounded <= 2147483647.0)
        return Variable::integer(static_cast<std::int32_t>(rounded));
    if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) throwInvalid(name);
    return Variable::number(static_cast<float>(value));
}

}  // namespace

Variable tetration(const Variable& height, const Variable& base) {
    if (!height.isNumeric() || !base.isNumeric())
        throw std::runtime_error("tetration requires numeric operands");
    const std::int32_t rounds = requireNonNegativeIntegerValue(toDouble(height), "tetration", "height");
    return makeHyperOperationResult(tetrationDouble(toDouble(base), rounds, "tetration"),
                                    !height.isFloat() && !base.isFloat(), "tetration");
}

Variable pentation(const Variable& base, const Variable& count) {
    if (!base.isNumeric() || !count.isNumeric())
        throw std::runtime_error("pentation requires numeric operands");
    const std::int32_t rounds = requireNonNegativeIntegerValue(toDouble(count), "pentation", "count");
    return makeHyperOperationResult(pentationDouble(toDouble(base), rounds),
                                    !base.isFloat() && !count.isFloat(), "pentation");
}

}  // namespace kelmora
