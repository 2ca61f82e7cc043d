#pragma once

#include <utility>

#include "platform/windows/windows_api.h"

namespace kelmora {

// A system object that is closed with its scope. False while it holds none.
class Handle {
public:
    explicit Handle(HANDLE handle = nullptr) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(Handle&& other) noexcept : handle_(other.release()) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() {
        if (handle_) CloseHandle(handle_);
    }
    explicit operator bool() const { return handle_ != nullptr; }
    HANDLE get() const { return handle_; }
    HANDLE release() { return std::exchange(handle_, nullptr); }

private:
    HANDLE handle_;
};

}  // namespace kelmora
