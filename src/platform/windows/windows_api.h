#pragma once

// The system's own headers. The first is what the others are made of.
// clang-format off
#include <windows.h>
#include <mmsystem.h>
#include <windowsx.h>
// clang-format on

#include <bit>

namespace kelmora {

// A function of a library that every process has loaded, or null where this version of it has none.
template <typename Function>
Function* systemFunction(const char* library, const char* name) {
    const HMODULE module = GetModuleHandleA(library);
    return module ? std::bit_cast<Function*>(GetProcAddress(module, name)) : nullptr;
}

}  // namespace kelmora
