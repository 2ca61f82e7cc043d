#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "script/callable.h"
#include "script/variable.h"

// What native functions that scripts call use on their arguments and results. Every failure is a
// std::runtime_error whose text starts with the qualified function name and ": ".
namespace kelmora {

class VesperScript;

[[noreturn]] void bindingError(std::string_view function, std::string_view message);

// The argument's name stands in the message: "Plush.setPixel: x must be numeric".
double numericValue(const Variable& value, std::string_view function, std::string_view argument);
const std::string& stringValue(const Variable& value, std::string_view function, std::string_view argument);
void* pointerValue(const Variable& value, std::string_view function, std::string_view argument);
Variable returnValues(std::initializer_list<Variable> values);

// One call of a module's member: the engine that makes it, the member's qualified name and the arguments,
// which are counted from 0 here and from 1 in messages. Everything is borrowed for the call.
class BindingCall {
public:
    BindingCall(VesperScript& engine, const std::string& function, std::span<const Variable> arguments)
        : engine_(engine), function_(function), arguments_(arguments) {}

    VesperScript& engine() const { return engine_; }
    const std::string& function() const { return function_; }
    std::size_t count() const { return arguments_.size(); }
    // Raises "missing argument N".
    const Variable& at(std::size_t index) const {
        if (index >= arguments_.size()) failMissing(index);
        return arguments_[index];
    }
    // Raises for the first of `count` arguments that is missing.
    void require(std::size_t count) const {
        if (arguments_.size() < count) failMissing(arguments_.size());
    }

    double number(std::size_t index, std::string_view name) const {
        return numericValue(at(index), function_, name);
    }
    // Truncated towards zero and held to 32 bits; NaN is 0.
    std::int32_t integer(std::size_t index, std::string_view name) const;
    const std::string& text(std::size_t index, std::string_view name) const {
        return stringValue(at(index), function_, name);
    }
    // A path as the system takes it.
    std::string path(std::size_t index, std::string_view name = "path") const;
    void* pointer(std::size_t index, std::string_view name) const {
        return pointerValue(at(index), function_, name);
    }
    // Nil is false, a bool is itself, any other value is true.
    bool condition(std::size_t index) const { return isTruthy(at(index)); }
    [[noreturn]] void fail(std::string_view message) const { bindingError(function_, message); }

private:
    [[noreturn]] void failMissing(std::size_t index) const;

    VesperScript& engine_;
    const std::string& function_;
    std::span<const Variable> arguments_;
};

// A member of a module.
struct BindingRow {
    const char* name;
    Binding binding;
};

// A module table: each member is a native function named "Module.member".
Variable makeModule(std::string_view moduleName, std::initializer_list<std::span<const BindingRow>> tables);

}  // namespace kelmora
