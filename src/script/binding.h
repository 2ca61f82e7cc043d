#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "script/callable.h"
#include "script/variable.h"

// What native functions that scripts call use on their arguments and results. Every failure is a
// std::runtime_error whose text starts with the qualified function name and ": ".
namespace kelmora {

using BindingArguments = std::vector<Variable>;

[[noreturn]] void bindingError(std::string_view function, std::string_view message);

// The argument's name stands in the message: "Plush.setPixel: x must be numeric".
double numericValue(const Variable& value, std::string_view function, std::string_view argument);
const std::string& stringValue(const Variable& value, std::string_view function, std::string_view argument);
// Nil is the null pointer.
void* pointerValue(const Variable& value, std::string_view function, std::string_view argument);
Variable returnValues(std::initializer_list<Variable> values);

// The arguments of one call of a named binding, counted from 0 here and from 1 in messages.
class BindingCall {
public:
    BindingCall(std::string_view function, const BindingArguments& arguments)
        : function_(function), arguments_(arguments) {}

    std::string_view function() const { return function_; }
    std::size_t count() const { return arguments_.size(); }
    // Raises "missing argument N".
    const Variable& at(std::size_t index) const;
    // Raises for the first of `count` arguments that is missing.
    void require(std::size_t count) const;

    double number(std::size_t index, std::string_view name) const {
        return numericValue(at(index), function_, name);
    }
    // Truncated towards zero and held to 32 bits; NaN is 0.
    std::int32_t integer(std::size_t index, std::string_view name) const;
    const std::string& text(std::size_t index, std::string_view name) const {
        return stringValue(at(index), function_, name);
    }
    void* pointer(std::size_t index, std::string_view name) const {
        return pointerValue(at(index), function_, name);
    }
    // Nil is false, a bool is itself, any other value is true.
    bool condition(std::size_t index) const { return isTruthy(at(index)); }
    [[noreturn]] void fail(std::string_view message) const { bindingError(function_, message); }

private:
    std::string_view function_;
    const BindingArguments& arguments_;
};

using Binding = std::function<Variable(const BindingCall&)>;
using ModuleEntry = std::pair<std::string_view, Binding>;

// A module table: each member is a native function named "Module.member".
Variable makeModule(std::string_view moduleName, std::initializer_list<ModuleEntry> entries);

}  // namespace kelmora
