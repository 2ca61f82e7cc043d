#pragma once

#include <cstdint>
#include <string_view>

#include "lua/interpreter.h"

namespace vesper::lua {

// What library functions want of their arguments; each raises with the function's name. Positions count from
// 0 here and from 1 in the messages.
void requireArgumentCount(const NativeCall& call, std::size_t least, std::size_t most);
void requireAtLeast(const NativeCall& call, std::size_t least);
double requireNumber(const NativeCall& call, std::size_t position);
// Whole floats too.
std::int64_t requireInteger(const NativeCall& call, std::size_t position);
std::string_view requireString(const NativeCall& call, std::size_t position);
Table& requireTable(const NativeCall& call, std::size_t position);
void requireFunction(const NativeCall& call, std::size_t position);

// The same where an argument may be left out or nil.
std::int64_t optionalInteger(const NativeCall& call, std::size_t position, std::int64_t otherwise);
double optionalNumber(const NativeCall& call, std::size_t position, double otherwise);
std::string_view optionalString(const NativeCall& call, std::size_t position, std::string_view otherwise);

[[noreturn]] void failArgument(const NativeCall& call, std::size_t position, std::string_view wanted);
// "name: message"
[[noreturn]] void failCall(const NativeCall& call, std::string_view message);

}  // namespace vesper::lua
