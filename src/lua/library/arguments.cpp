#include "lua/library/arguments.h"

#include <stdexcept>
#include <string>

#include "lua/operations.h"

namespace vesper::lua {
namespace {

std::string counted(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

}  // namespace

void failArgument(const NativeCall& call, std::size_t position, std::string_view wanted) {
    throw std::runtime_error(call.function().name() + " expects " + std::string(wanted) + " as argument " +
                             std::to_string(position + 1));
}

void failCall(const NativeCall& call, std::string_view message) {
    throw std::runtime_error(call.function().name() + ": " + std::string(message));
}

void requireArgumentCount(const NativeCall& call, std::size_t least, std::size_t most) {
    if (call.count() >= least && call.count() <= most) return;
    const std::string wanted = least == most ? "exactly " + counted(most)
                                             : "between " + std::to_string(least) + " and " + counted(most);
    throw std::runtime_error(call.function().name() + " expects " + wanted);
}

void requireAtLeast(const NativeCall& call, std::size_t least) {
    if (call.count() >= least) return;
    throw std::runtime_error(call.function().name() + " expects at least " + counted(least));
}

double requireNumber(const NativeCall& call, std::size_t position) {
    const Value& value = call[position];
    if (!value.isNumber()) failArgument(call, position, "a number");
    return value.asDouble();
}

std::int64_t requireInteger(const NativeCall& call, std::size_t position) {
    const Value& value = call[position];
    std::int64_t whole = 0;
    if (!toWholeNumber(value, whole)) failArgument(call, position, "an integer");
    return whole;
}

std::string_view requireString(const NativeCall& call, std::size_t position) {
    const Value& value = call[position];
    if (!value.isString()) failArgument(call, position, "a string");
    return value.letters();
}

Table& requireTable(const NativeCall& call, std::size_t position) {
    const Value& value = call[position];
    if (!value.isTable()) failArgument(call, position, "a table");
    return value.table();
}

void requireFunction(const NativeCall& call, std::size_t position) {
    if (!call[position].isFunction()) failArgument(call, position, "a function");
}

std::int64_t optionalInteger(const NativeCall& call, std::size_t position, std::int64_t otherwise) {
    return call[position].isNil() ? otherwise : requireInteger(call, position);
}

double optionalNumber(const NativeCall& call, std::size_t position, double otherwise) {
    return call[position].isNil() ? otherwise : requireNumber(call, position);
}

std::string_view optionalString(const NativeCall& call, std::size_t position, std::string_view otherwise) {
    return call[position].isNil() ? otherwise : requireString(call, position);
}

}  // namespace vesper::lua
