#pragma once

#include <utility>

#include "common/win32/system.h"

namespace zpt {

/// Owns one handle of the system and releases it. Traits: the handle's type, the value that stands for none,
/// and how a handle is released.
template <class Traits>
class Owner {
public:
    using Type = typename Traits::Type;

    Owner() = default;
    explicit Owner(Type handle) : handle_{handle} {}
    Owner(Owner&& other) noexcept : handle_{other.release()} {}
    Owner& operator=(Owner&& other) noexcept {
        reset(other.release());
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    [[nodiscard]] Type get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::none; }
    /// Takes another handle, or none, in place of the one that it has.
    void reset(Type handle = Traits::none) {
        if (handle_ != Traits::none && handle_ != handle) Traits::release(handle_);
        handle_ = handle;
    }
    /// Gives the handle away without releasing it.
    [[nodiscard]] Type release() { return std::exchange(handle_, Traits::none); }

private:
    Type handle_ = Traits::none;
};

struct KernelTraits {
    using Type = HANDLE;
    static constexpr HANDLE none = nullptr;
    static void release(HANDLE handle) { CloseHandle(handle); }
};

using Handle = Owner<KernelTraits>;

/// A handle out of a call that tells failure by INVALID_HANDLE_VALUE.
[[nodiscard]] inline Handle validHandle(HANDLE handle) {
    return Handle{handle == INVALID_HANDLE_VALUE ? nullptr : handle};
}

}  // namespace zpt
