#include <cmath>
#include <limits>

#include "base/trigonometry.h"
#include "lua/library/arguments.h"
#include "lua/library/library.h"
#include "lua/operations.h"

namespace vesper::lua {
namespace {

constexpr double pi = 3.14159265358979323846;

template <typename Beats>
void extreme(NativeCall& call, Beats beats) {
    requireAtLeast(call, 1);
    std::size_t best = 0;
    requireNumber(call, 0);
    for (std::size_t i = 1; i < call.count(); ++i) {
        requireNumber(call, i);
        if (beats(call[i], call[best])) best = i;
    }
    call.give(call[best]);
}

void min(NativeCall& call) {
    extreme(call, [](const Value& a, const Value& b) { return isLess(a, b); });
}

void max(NativeCall& call) {
    extreme(call, [](const Value& a, const Value& b) { return isLess(b, a); });
}

void floor(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(call[0].isInteger() ? call[0] : numericResult(std::floor(requireNumber(call, 0))));
}

void ceil(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(call[0].isInteger() ? call[0] : numericResult(std::ceil(requireNumber(call, 0))));
}

void abs(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    if (call[0].isInteger()) return call.give(call[0].integerValue() < 0 ? negated(call[0]) : call[0]);
    call.give(numericResult(std::fabs(requireNumber(call, 0))));
}

// A function of one number.
template <double (*function)(double)>
void ofNumber(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(numericResult(function(requireNumber(call, 0))));
}

double radians(double degrees) {
    return degrees * pi / 180.0;
}
double degrees(double radians) {
    return radians * 180.0 / pi;
}
double exponential(double x) {
    return std::exp(x);
}
double squareRoot(double x) {
    return std::sqrt(x);
}

// Whole exponents of whole numbers are exact while 64 bits hold the result.
bool wholePower(std::int64_t base, std::int64_t exponent, std::int64_t& result) {
    result = 1;
    while (exponent > 0) {
        if ((exponent & 1) != 0 && __builtin_mul_overflow(result, base, &result)) return false;
        exponent >>= 1;
        if (exponent > 0 && __builtin_mul_overflow(base, base, &base)) return false;
    }
    return true;
}

void pow(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    const double base = requireNumber(call, 0);
    const double exponent = requireNumber(call, 1);
    std::int64_t result = 0;
    if (call[0].isInteger() && call[1].isInteger() && call[1].integerValue() >= 0 &&
        wholePower(call[0].integerValue(), call[1].integerValue(), result))
        return call.give(Value::integer(result));
    call.give(numericResult(std::pow(base, exponent)));
}

void clamp(NativeCall& call) {
    requireArgumentCount(call, 3, 3);
    for (std::size_t i = 0; i < 3; ++i) requireNumber(call, i);
    if (isLess(call[2], call[1])) failCall(call, "the lower bound is above the upper one");
    const Value& raised = isLess(call[0], call[1]) ? call[1] : call[0];
    call.give(isLess(call[2], raised) ? call[2] : raised);
}

void log(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    const double x = requireNumber(call, 0);
    if (call[1].isNil()) return call.give(numericResult(std::log(x)));
    const double base = requireNumber(call, 1);
    if (base == 2) return call.give(numericResult(std::log2(x)));
    if (base == 10) return call.give(numericResult(std::log10(x)));
    call.give(numericResult(std::log(x) / std::log(base)));
}

std::uint64_t drawBits(std::mt19937& generator) {
    const std::uint64_t high = generator();
    return high << 32 | generator();
}

// Without arguments a float in [0, 1), with one an integer from 1 to it, with two one between them.
void random(NativeCall& call) {
    requireArgumentCount(call, 0, 2);
    std::mt19937& generator = call.machine().generator();
    if (call.count() == 0) {
        constexpr double step = 1.0 / 9007199254740992.0;  // a double holds 53 bits exactly
        return call.give(Value::number(static_cast<double>(drawBits(generator) >> 11) * step));
    }
    const std::int64_t lowest = call.count() == 2 ? requireInteger(call, 0) : 1;
    const std::int64_t highest = requireInteger(call, call.count() - 1);
    if (lowest > highest) failCall(call, "the interval is empty");
    const std::uint64_t span = static_cast<std::uint64_t>(highest) - static_cast<std::uint64_t>(lowest) + 1;
    const std::uint64_t draw = drawBits(generator);
    const std::uint64_t offset = span == 0 ? draw : draw % span;
    call.give(Value::integer(static_cast<std::int64_t>(static_cast<std::uint64_t>(lowest) + offset)));
}

void randomSeed(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.machine().generator().seed(static_cast<std::uint32_t>(requireInteger(call, 0)));
}

constexpr LibraryEntry entries[] = {
    {"min", min},
    {"max", max},
    {"floor", floor},
    {"ceil", ceil},
    {"abs", abs},
    {"sin", ofNumber<kelmora::sineOf>},
    {"cos", ofNumber<kelmora::cosineOf>},
    {"rad", ofNumber<radians>},
    {"deg", ofNumber<degrees>},
    {"pow", pow},
    {"exp", ofNumber<exponential>},
    {"clamp", clamp},
    {"log", log},
    {"random", random},
    {"randomseed", randomSeed},
    {"sqrt", ofNumber<squareRoot>},
};

}  // namespace

void bindMathLibrary(Interpreter& machine) {
    const Value table = bindTable(machine, "math", entries);
    table.table().set("pi", Value::number(pi));
    table.table().set("huge", Value::number(std::numeric_limits<double>::infinity()));
}

}  // namespace vesper::lua
