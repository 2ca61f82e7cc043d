#include "script/binding.h"

#include <stdexcept>

#include "script/numbers.h"
#include "script/table_object.h"
#include "script/vesper_script.h"

namespace kelmora {

void bindingError(std::string_view function, std::string_view message) {
    throw std::runtime_error(std::string(function).append(": ").append(message));
}

double numericValue(const Variable& value, std::string_view function, std::string_view argument) {
    if (!value.isNumeric()) bindingError(function, std::string(argument) + " must be numeric");
    return toDouble(value);
}

const std::string& stringValue(const Variable& value, std::string_view function, std::string_view argument) {
    if (!value.isString()) bindingError(function, std::string(argument) + " must be a string");
    return value.text();
}

void* pointerValue(const Variable& value, std::string_view function, std::string_view argument) {
    if (value.isNot()) return nullptr;
    if (!value.isPointer()) bindingError(function, std::string(argument) + " must be a pointer");
    return value.pointerValue();
}

Variable returnValues(std::initializer_list<Variable> values) {
    return Variable::makeMulti(values);
}

const Variable& BindingCall::at(std::size_t index) const {
    if (index >= arguments_.size()) fail("missing argument " + std::to_string(index + 1));
    return arguments_[index];
}

void BindingCall::require(std::size_t count) const {
    if (arguments_.size() < count) at(arguments_.size());
}

std::int32_t BindingCall::integer(std::size_t index, std::string_view name) const {
    return saturatingInt(number(index, name));
}

Variable makeModule(std::string_view moduleName, std::initializer_list<ModuleEntry> entries) {
    Variable module = Variable::makeTable();
    module.table().reserve(entries.size());
    for (const auto& [member, binding] : entries) {
        const std::string qualified = std::string(moduleName).append(".").append(member);
        const auto native = [qualified, call = binding](const BindingArguments& arguments) {
            return call(BindingCall(qualified, arguments));
        };
        module.table().set(std::string(member), VesperScript::createNativeCallable(native, qualified));
    }
    return module;
}

}  // namespace kelmora
