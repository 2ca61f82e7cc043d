#pragma once

#include <span>

#include "lua/function_object.h"
#include "lua/multi_value.h"

namespace vesper::lua {

class Interpreter;

// One call of a library function: its arguments, and the results that it leaves.
class NativeCall {
public:
    NativeCall(Interpreter& machine, const FunctionObject& function, std::span<Value> arguments)
        : machine_(machine), function_(function), arguments_(arguments) {}

    Interpreter& machine() { return machine_; }
    const FunctionObject& function() const { return function_; }
    std::size_t count() const { return arguments_.size(); }
    std::span<Value> arguments() { return arguments_; }
    // nil behind the last.
    const Value& operator[](std::size_t index) const {
        return index < arguments_.size() ? arguments_[index] : nothing;
    }

    void give(Value value) { results_.push(std::move(value)); }
    void giveAll(const MultiValue& values) {
        for (std::size_t i = 0; i < values.size(); ++i) results_.push(values[i]);
    }
    MultiValue& results() { return results_; }

private:
    static const Value nothing;

    Interpreter& machine_;
    const FunctionObject& function_;
    std::span<Value> arguments_;
    MultiValue results_;
};

}  // namespace vesper::lua
