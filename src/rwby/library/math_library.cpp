#include <cmath>

#include "base/trigonometry.h"
#include "rwby/library/library.h"
#include "rwby/library/random_source.h"
#include "rwby/operations.h"

namespace vesper::ruby {
namespace {

constexpr double pi = 3.14159265358979323846;

RubyValue floor(RubyVM&, Arguments arguments) {
    if (arguments[0].isInteger()) return arguments[0];
    return numericResult(std::floor(arguments[0].asFloat()));
}

RubyValue ceil(RubyVM&, Arguments arguments) {
    if (arguments[0].isInteger()) return arguments[0];
    return numericResult(std::ceil(arguments[0].asFloat()));
}

RubyValue abs(RubyVM&, Arguments arguments) {
    if (!arguments[0].isInteger()) return RubyValue::number(std::fabs(arguments[0].asFloat()));
    const std::int64_t value = arguments[0].integerValue();
    return RubyValue::integer(value < 0 ? wrappedSubtract(0, value) : value);
}

// The first argument that no other one beats; `beats` is the order's answer for one that does.
RubyValue extreme(Arguments arguments, int beats) {
    const RubyValue* best = arguments.data();
    for (const RubyValue& candidate : arguments) {
        require(candidate.isNumeric(), "value is not numeric");
        if (compareOrdered(candidate, *best) == beats) best = &candidate;
    }
    return *best;
}

RubyValue min(RubyVM&, Arguments arguments) {
    return extreme(arguments, -1);
}

RubyValue max(RubyVM&, Arguments arguments) {
    return extreme(arguments, 1);
}

RubyValue sin(RubyVM&, Arguments arguments) {
    return numericResult(kelmora::sineOf(arguments[0].asFloat()));
}

RubyValue cos(RubyVM&, Arguments arguments) {
    return numericResult(kelmora::cosineOf(arguments[0].asFloat()));
}

RubyValue rad(RubyVM&, Arguments arguments) {
    return numericResult(arguments[0].asFloat() * pi / 180.0);
}

RubyValue deg(RubyVM&, Arguments arguments) {
    return numericResult(arguments[0].asFloat() * 180.0 / pi);
}

RubyValue log(RubyVM&, Arguments arguments) {
    const double value = std::log(arguments[0].asFloat());
    return numericResult(arguments.size() > 1 ? value / std::log(arguments[1].asFloat()) : value);
}

RubyValue sqrt(RubyVM&, Arguments arguments) {
    return numericResult(std::sqrt(arguments[0].asFloat()));
}

RubyValue pow(RubyVM&, Arguments arguments) {
    return numericResult(std::pow(arguments[0].asFloat(), arguments[1].asFloat()));
}

RubyValue exp(RubyVM&, Arguments arguments) {
    return numericResult(std::exp(arguments[0].asFloat()));
}

RubyValue clamp(RubyVM&, Arguments arguments) {
    for (const RubyValue& value : arguments) require(value.isNumeric(), "value is not numeric");
    require(compareOrdered(arguments[1], arguments[2]) != 1,
            "math_clamp lower bound is greater than upper bound");
    if (compareOrdered(arguments[0], arguments[1]) == -1) return arguments[1];
    return compareOrdered(arguments[0], arguments[2]) == 1 ? arguments[2] : arguments[0];
}

RubyValue randomSeed(RubyVM& vm, Arguments arguments) {
    vm.random().seed(arguments[0].asInteger());
    return {};
}

RubyValue random(RubyVM& vm, Arguments arguments) {
    if (arguments.empty()) return RubyValue::number(vm.random().draw());
    const std::int64_t lowest = arguments.size() > 1 ? arguments[0].asInteger() : 1;
    const std::int64_t highest = arguments.back().asInteger();
    require(lowest <= highest, "math_random interval is empty");
    return RubyValue::integer(vm.random().drawBetween(lowest, highest));
}

constexpr LibraryEntry entries[] = {
    {"math_floor", floor, exactly(1)},
    {"math_ceil", ceil, exactly(1)},
    {"math_abs", abs, exactly(1)},
    {"math_min", min, atLeast(1)},
    {"math_max", max, atLeast(1)},
    {"math_sin", sin, exactly(1)},
    {"math_cos", cos, exactly(1)},
    {"math_rad", rad, exactly(1)},
    {"math_log", log, between(1, 2)},
    {"math_sqrt", sqrt, exactly(1)},
    {"math_pow", pow, exactly(2)},
    {"math_deg", deg, exactly(1)},
    {"math_exp", exp, exactly(1)},
    {"math_clamp", clamp, exactly(3)},
    {"math_random_seed", randomSeed, exactly(1)},
    {"math_random", random, between(0, 2)},
};

}  // namespace

std::span<const LibraryEntry> mathLibrary() {
    return entries;
}

}  // namespace vesper::ruby
