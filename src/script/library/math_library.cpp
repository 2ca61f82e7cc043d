#include <cmath>
#include <limits>

#include "base/trigonometry.h"
#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/numbers.h"

namespace kelmora {
namespace {

Variable wholeOrFloat(double value) {
    if (value >= -2147483648.0 && value <= 2147483647.0)
        return Variable::integer(static_cast<std::int32_t>(value));
    return Variable::number(static_cast<float>(value));
}

Variable narrowed(double value) {
    return Variable::number(static_cast<float>(value));
}

Variable floor(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['floor'](x) requires exactly 1 argument");
    return wholeOrFloat(std::floor(toDouble(arguments[0])));
}

Variable ceil(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['ceil'](x) requires exactly 1 argument");
    return wholeOrFloat(std::ceil(toDouble(arguments[0])));
}

Variable abs(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['abs'](x) requires exactly 1 argument");
    if (arguments[0].isFloat()) return Variable::number(std::fabs(arguments[0].floatValue()));
    const std::int32_t value = toInt(arguments[0]);
    const auto bits = static_cast<std::uint32_t>(value);
    return Variable::integer(value < 0 ? static_cast<std::int32_t>(0u - bits) : value);
}

// The first argument that no other one beats.
template <typename Beats>
Variable extreme(Arguments arguments, Beats beats) {
    const Variable* best = arguments.data();
    double bestValue = toDouble(*best);
    for (const Variable& candidate : arguments.subspan(1)) {
        const double value = toDouble(candidate);
        if (!beats(value, bestValue)) continue;
        best = &candidate;
        bestValue = value;
    }
    return *best;
}

Variable min(Interpreter&, Arguments arguments) {
    require(!arguments.empty(), "math['min'](x, ...) requires at least 1 argument");
    return extreme(arguments, [](double a, double b) { return a < b; });
}

Variable max(Interpreter&, Arguments arguments) {
    require(!arguments.empty(), "math['max'](x, ...) requires at least 1 argument");
    return extreme(arguments, [](double a, double b) { return a > b; });
}

Variable sin(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['sin'](x) requires exactly 1 argument");
    return narrowed(sineOf(toDouble(arguments[0])));
}

Variable cos(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['cos'](x) requires exactly 1 argument");
    return narrowed(cosineOf(toDouble(arguments[0])));
}

Variable rad(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['rad'](x) requires exactly 1 argument");
    return narrowed(toDouble(arguments[0]) * 3.14159265358979323846 / 180.0);
}

Variable log(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 || arguments.size() == 2,
            "math['log'](x[, base]) requires 1 or 2 arguments");
    const double value = std::log(toDouble(arguments[0]));
    return narrowed(arguments.size() == 1 ? value : value / std::log(toDouble(arguments[1])));
}

Variable sqrt(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "math['sqrt'](x) requires exactly 1 argument");
    return narrowed(std::sqrt(toDouble(arguments[0])));
}

Variable randomSeed(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1, "math['randomseed'](x) requires exactly 1 argument");
    script.generator.seed(static_cast<std::uint32_t>(toInt(arguments[0])));
    return {};
}

constexpr LibraryEntry entries[] = {
    {"floor", floor},
    {"ceil", ceil},
    {"abs", abs},
    {"min", min},
    {"max", max},
    {"sin", sin},
    {"cos", cos},
    {"rad", rad},
    {"log", log},
    {"sqrt", sqrt},
    {"random", randomFunction},
    {"randomseed", randomSeed},
};

std::int32_t drawBetween(std::mt19937& generator, std::int32_t lowest, std::int32_t highest) {
    const std::uint32_t span = static_cast<std::uint32_t>(highest) - static_cast<std::uint32_t>(lowest) + 1u;
    const auto draw = static_cast<std::uint32_t>(generator());
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(lowest) + (span == 0 ? draw : draw % span));
}

}  // namespace

Variable randomFunction(Interpreter& script, Arguments arguments) {
    require(arguments.size() <= 2, "random function takes 0, 1, or 2 arguments");
    if (arguments.empty()) {
        constexpr float step = 1.0f / 16777216.0f;  // a float holds 24 bits exactly
        return Variable::number(static_cast<float>(script.generator() >> 8) * step);
    }
    if (arguments.size() == 1) {
        require(arguments[0].isInt(), "random function with one argument requires an integer");
        require(arguments[0].intValue() > 0, "random function requires a positive maximum value");
        return Variable::integer(drawBetween(script.generator, 1, arguments[0].intValue()));
    }
    require(arguments[0].isInt() && arguments[1].isInt(),
            "random function with two arguments requires integers");
    require(arguments[0].intValue() <= arguments[1].intValue(), "random function requires min <= max");
    return Variable::integer(drawBetween(script.generator, arguments[0].intValue(), arguments[1].intValue()));
}

std::span<const LibraryEntry> mathLibrary() {
    return entries;
}

}  // namespace kelmora
