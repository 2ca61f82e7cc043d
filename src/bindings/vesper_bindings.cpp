#include "base/checksum.h"
#include "base/whole_file.h"
#include "bindings/modules.h"
#include "bindings/runtime.h"
#include "script/binding.h"
#include "script/numbers.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

Variable runVesperScript(const BindingCall& call) {
    call.engine().runScript(call.text(0, "scriptText"));
    return {};
}

// Any failure, an unknown name included, is nil.
Variable getVesperVariable(const BindingCall& call) {
    try {
        return call.engine().pullVariable(call.text(0, "name"));
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

Variable setVesperVariable(const BindingCall& call) {
    const std::string& name = call.text(0, "name");
    Variable value = call.count() > 1 ? call.at(1) : Variable();
    if (call.count() >= 3 && call.at(2).isNumeric())
        value = convertForGlobal(call, call.integer(2, "datatype"));
    call.engine().pushVariable(name, value);
    return {};
}

Variable milliseconds(std::int64_t microseconds) {
    return Variable::integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(microseconds / 1000)));
}

Variable getGlobalClock(const BindingCall& call) {
    return milliseconds(systemMicroseconds() - runtimeOf(call).clockOrigin);
}

Variable getFrameClock(const BindingCall& call) {
    Runtime& runtime = runtimeOf(call);
    const std::int64_t now = systemMicroseconds();
    const std::int64_t elapsed = now - runtime.frameClock;
    runtime.frameClock = now;
    return milliseconds(elapsed);
}

Variable checkBoundsBinding(const BindingCall& call) {
    call.require(2);
    return Variable::integer(
        checkbounds(call.integer(0, "x"), call.integer(1, "y"), &runtimeOf(call).buttons));
}

Variable pushButtonBinding(const BindingCall& call) {
    call.require(5);
    runtimeOf(call).buttons.push_back({call.integer(0, "x1"), call.integer(1, "x2"), call.integer(2, "y1"),
                                       call.integer(3, "y2"), call.integer(4, "result")});
    return {};
}

Variable hostLog(const BindingCall& call) {
    call.engine().host().print(call.text(0, "message") + "\n");
    call.engine().host().flush();
    return {};
}

Variable readFileBinding(const BindingCall& call) {
    const std::string path = call.path(0);
    auto content = readWholeFile(path);
    if (!content) call.fail("failed to read file: " + path);
    return Variable::text(std::move(*content));
}

// The file changes as a whole or not at all.
Variable replaceFileBinding(const BindingCall& call) {
    const std::string path = call.path(0);
    const std::string text = call.text(1, "text");
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    return Variable::boolean(call.engine().host().replaceFile(path, {bytes, text.size()}));
}

Variable sleepForMs(const BindingCall& call) {
    vh_sleep_ms(call.integer(0, "milliseconds"));
    return {};
}

Variable clearButtonsBinding(const BindingCall& call) {
    runtimeOf(call).buttons.clear();
    return {};
}

Variable checksumBinding(const BindingCall& call) {
    return Variable::integer(calculateChecksum(call.text(0, "text")));
}

Variable getRuntimePath(const BindingCall& call) {
    return Variable::text(runtimeOf(call).path);
}

constexpr BindingRow vesperRows[] = {
    {"runScript", runVesperScript},        {"getVar", getVesperVariable},
    {"setVar", setVesperVariable},         {"getGlobalTime", getGlobalClock},
    {"getClock", getFrameClock},           {"sleep", sleepForMs},
    {"checkButton", checkBoundsBinding},   {"pushButton", pushButtonBinding},
    {"clearButtons", clearButtonsBinding}, {"checksum", checksumBinding},
    {"getPath", getRuntimePath},           {"hostLog", hostLog},
    {"readFile", readFileBinding},         {"replaceFile", replaceFileBinding},
};

}  // namespace

std::span<const BindingRow> vesperBindings() {
    return vesperRows;
}

}  // namespace kelmora
