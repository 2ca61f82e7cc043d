#include "script/binding.h"

#include <stdexcept>

#include "base/kept_place.h"
#include "base/paths.h"
#include "script/numbers.h"
#include "script/table_object.h"

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

void BindingCall::failMissing(std::size_t index) const {
    fail("missing argument " + std::to_string(index + 1));
}

std::int32_t BindingCall::integer(std::size_t index, std::string_view name) const {
    return saturatingInt(number(index, name));
}

std::string BindingCall::path(std::size_t index, std::string_view name) const {
    return placeOf(normalisePath(text(index, name)));
}

Variable makeModule(std::string_view moduleName, std::initializer_list<std::span<const BindingRow>> tables) {
    Variable module = Variable::makeTable();
    for (const std::span<const BindingRow> rows : tables)
        for (const BindingRow& row : rows)
            module.table().set(
                std::string(row.name),
                makeBoundCallable(row.binding, std::string(moduleName).append(".").append(row.name)));
    return module;
}

}  // namespace kelmora
