#include "base/whole_file.h"
#include "host/checksum.h"
#include "host/runtime.h"
#include "platform/shim.h"
#include "script/binding.h"
#include "script/numbers.h"

namespace kelmora {
namespace {

Variable runVesperScript(Runtime& runtime, const BindingCall& call) {
    runtime.engine.runScript(call.text(0, "scriptText"));
    return {};
}

// Any failure, an unknown name included, is nil.
Variable getVesperVariable(Runtime& runtime, const BindingCall& call) {
    try {
        return runtime.engine.pullVariable(call.text(0, "name"));
    } catch (const std::exception&) {
        return {};
    }
}

// The value as the wanted data type: 0 integer, 1 float, 2 bool, 3 string, 4 and 5 as it is.
Variable convertForGlobal(const BindingCall& call, std::int32_t dataType) {
    const Variable& value = call.at(1);
    switch (dataType) {
        case 0:
            return Variable::integer(call.integer(1, "value"));
        case 1:
            return Variable::number(static_cast<float>(call.number(1, "value")));
        case 2:
            return Variable::boolean(isTruthy(value));
        case 3:
            return Variable::text(call.text(1, "value"));
        case 4:
        case 5:
            return value;
        default:
            return Variable::boolean(false);
    }
}

Variable setVesperVariable(Runtime& runtime, const BindingCall& call) {
    const std::string& name = call.text(0, "name");
    Variable value = call.count() > 1 ? call.at(1) : Variable();
    if (call.count() >= 3 && call.at(2).isNumeric())
        value = convertForGlobal(call, call.integer(2, "datatype"));
    runtime.engine.pushVariable(name, value);
    return {};
}

Variable milliseconds(std::int64_t microseconds) {
    return Variable::integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(microseconds / 1000)));
}

Variable getFrameClock(Runtime& runtime) {
    const std::int64_t now = systemMicroseconds();
    const std::int64_t elapsed = now - runtime.frameClock;
    runtime.frameClock = now;
    return milliseconds(elapsed);
}

Variable checkBoundsBinding(Runtime& runtime, const BindingCall& call) {
    call.require(2);
    return Variable::integer(checkbounds(call.integer(0, "x"), call.integer(1, "y"), &runtime.buttons));
}

Variable pushButtonBinding(Runtime& runtime, const BindingCall& call) {
    call.require(5);
    runtime.buttons.push_back({call.integer(0, "x1"), call.integer(1, "x2"), call.integer(2, "y1"),
                               call.integer(3, "y2"), call.integer(4, "result")});
    return {};
}

Variable hostLog(Runtime& runtime, const BindingCall& call) {
    runtime.engine.host().print(call.text(0, "message") + "\n");
    runtime.engine.host().flush();
    return {};
}

Variable readFileBinding(const BindingCall& call) {
    const std::string path = VesperScript::normalisePath(call.text(0, "path"));
    auto content = readWholeFile(path);
    if (!content) call.fail("failed to read file: " + path);
    return Variable::text(std::move(*content));
}

// The file changes as a whole or not at all.
Variable replaceFileBinding(Runtime& runtime, const BindingCall& call) {
    const std::string path = VesperScript::normalisePath(call.text(0, "path"));
    const std::string text = call.text(1, "text");
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    return Variable::boolean(runtime.engine.host().replaceFile(path, {bytes, text.size()}));
}

}  // namespace

Variable makeVesperModule(Runtime& runtime) {
    Runtime* const r = &runtime;
    return makeModule(
        "Vesper",
        {
            {"runScript", [r](const BindingCall& call) { return runVesperScript(*r, call); }},
            {"getVar", [r](const BindingCall& call) { return getVesperVariable(*r, call); }},
            {"setVar", [r](const BindingCall& call) { return setVesperVariable(*r, call); }},
            {"getGlobalTime",
             [r](const BindingCall&) { return milliseconds(systemMicroseconds() - r->clockOrigin); }},
            {"getClock", [r](const BindingCall&) { return getFrameClock(*r); }},
            {"sleep",
             [](const BindingCall& call) {
                 vh_sleep_ms(call.integer(0, "milliseconds"));
                 return Variable();
             }},
            {"checkButton", [r](const BindingCall& call) { return checkBoundsBinding(*r, call); }},
            {"pushButton", [r](const BindingCall& call) { return pushButtonBinding(*r, call); }},
            {"clearButtons",
             [r](const BindingCall&) {
                 r->buttons.clear();
                 return Variable();
             }},
            {"checksum",
             [](const BindingCall& call) {
                 return Variable::integer(calculateChecksum(call.text(0, "text")));
             }},
            {"getPath", [r](const BindingCall&) { return Variable::text(r->path); }},
            {"hostLog", [r](const BindingCall& call) { return hostLog(*r, call); }},
            {"readFile", readFileBinding},
            {"replaceFile", [r](const BindingCall& call) { return replaceFileBinding(*r, call); }},
        });
}

namespace {

[[noreturn]] void wrongCount(const char* message) {
    throw std::runtime_error(message);
}

Variable addHelper(const BindingArguments& arguments) {
    if (arguments.size() != 2) wrongCount("add requires exactly 2 arguments");
    const auto left = static_cast<float>(numericValue(arguments[0], "add", "left"));
    const auto right = static_cast<float>(numericValue(arguments[1], "add", "right"));
    const float sum = left + right;
    const bool isFloat = arguments[0].isFloat() || arguments[1].isFloat();
    return isFloat ? Variable::number(sum) : Variable::integer(saturatingInt(static_cast<double>(sum)));
}

Variable dFeet(const BindingArguments& arguments) {
    if (arguments.size() != 2) wrongCount("dFeet(feet, inches) requires exactly 2 arguments");
    const double feet = numericValue(arguments[0], "dFeet", "feet");
    const double inches = numericValue(arguments[1], "dFeet", "inches");
    return Variable::number(static_cast<float>(feet + inches / 12.0));
}

Variable dMetres(const BindingArguments& arguments) {
    if (arguments.size() != 2) wrongCount("dMetres(metres, centimetres) requires exactly 2 arguments");
    const double metres = numericValue(arguments[0], "dMetres", "metres");
    const double centimetres = numericValue(arguments[1], "dMetres", "centimetres");
    return Variable::number(static_cast<float>(metres * 3.280839895 + centimetres * 0.032808399));
}

Variable calcHeight(const BindingArguments& arguments) {
    if (arguments.size() != 1) wrongCount("calcHeight(feet) requires exactly 1 argument");
    return Variable::number(
        static_cast<float>((numericValue(arguments[0], "calcHeight", "feet") - 5.8825) * 184.95));
}

}  // namespace

void registerGlobalHelpers(VesperScript& engine) {
    engine.pushFunction("add", addHelper);
    engine.pushFunction("dFeet", dFeet);
    engine.pushFunction("dMetres", dMetres);
    engine.pushFunction("calcHeight", calcHeight);
}

}  // namespace kelmora
