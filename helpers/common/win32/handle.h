#pragma once

#include <utility>

#include "common/win32/system.h"

namespace zpt {

/// Owns a kernel handle.
class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_{handle == INVALID_HANDLE_VALUE ? nullptr : handle} {}
    Handle(Handle&& other) noexcept : handle_{std::exchange(other.handle_, nullptr)} {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }
    void close() {
        if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
    }

private:
    HANDLE handle_ = nullptr;
};

}  // namespace zpt
