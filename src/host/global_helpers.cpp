#include <stdexcept>

#include "host/registration.h"
#include "script/binding.h"
#include "script/numbers.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

void requireExactly(const BindingCall& call, std::size_t count, const char* message) {
    if (call.count() != count) throw std::runtime_error(message);
}

Variable rounded(double value) {
    return Variable::number(static_cast<float>(value));
}

Variable add(const BindingCall& call) {
    requireExactly(call, 2, "add requires exactly 2 arguments");
    const auto left = static_cast<float>(call.number(0, "left"));
    const auto right = static_cast<float>(call.number(1, "right"));
    const float sum = left + right;
    const bool isFloat = call.at(0).isFloat() || call.at(1).isFloat();
    return isFloat ? Variable::number(sum) : Variable::integer(saturatingInt(static_cast<double>(sum)));
}

Variable dFeet(const BindingCall& call) {
    requireExactly(call, 2, "dFeet(feet, inches) requires exactly 2 arguments");
    const double feet = call.number(0, "feet");
    return rounded(feet + call.number(1, "inches") / 12.0);
}

Variable dMetres(const BindingCall& call) {
    requireExactly(call, 2, "dMetres(metres, centimetres) requires exactly 2 arguments");
    const double metres = call.number(0, "metres");
    return rounded(metres * 3.280839895 + call.number(1, "centimetres") * 0.032808399);
}

Variable calcHeight(const BindingCall& call) {
    requireExactly(call, 1, "calcHeight(feet) requires exactly 1 argument");
    return rounded((call.number(0, "feet") - 5.8825) * 184.95);
}

constexpr BindingRow rows[] = {
    {"add", add}, {"dFeet", dFeet}, {"dMetres", dMetres}, {"calcHeight", calcHeight}};

}  // namespace

void registerGlobalHelpers(VesperScript& engine) {
    for (const BindingRow& row : rows)
        engine.pushVariable(row.name, makeBoundCallable(row.binding, row.name));
}

}  // namespace kelmora
