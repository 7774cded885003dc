#pragma once

#include <utility>

#include "platform/win32/system.h"

namespace qxterm::win32 {

/// Owns one handle of the system and releases it. Traits: the handle's type and how it is released; the null
/// handle stands for none.
template <class Traits>
class Owner {
public:
    using Type = typename Traits::Type;

    Owner() = default;
    explicit Owner(Type handle) : handle_{handle} {}
    Owner(Owner&& other) noexcept : handle_{std::exchange(other.handle_, Type{})} {}
    Owner& operator=(Owner&& other) noexcept {
        reset(std::exchange(other.handle_, Type{}));
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    [[nodiscard]] Type get() const { return handle_; }
    explicit operator bool() const { return handle_ != Type{}; }
    void reset(Type handle = Type{}) {
        if (handle_ != Type{} && handle_ != handle) Traits::release(handle_);
        handle_ = handle;
    }

private:
    Type handle_{};
};

template <class T>
struct GdiTraits {
    using Type = T;
    static void release(Type object) { DeleteObject(object); }
};

struct KernelTraits {
    using Type = HANDLE;
    static void release(Type handle) {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    }
};

struct MemoryDcTraits {
    using Type = HDC;
    static void release(Type dc) { DeleteDC(dc); }
};

using Font = Owner<GdiTraits<HFONT>>;
using Brush = Owner<GdiTraits<HBRUSH>>;
using Pen = Owner<GdiTraits<HPEN>>;
using Region = Owner<GdiTraits<HRGN>>;
using Bitmap = Owner<GdiTraits<HBITMAP>>;
using KernelHandle = Owner<KernelTraits>;
using MemoryDc = Owner<MemoryDcTraits>;

/// The device context of the whole screen, for measuring.
class ScreenDc {
public:
    ScreenDc() : dc_{GetDC(nullptr)} {}
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    ~ScreenDc() { ReleaseDC(nullptr, dc_); }
    [[nodiscard]] HDC get() const { return dc_; }

private:
    HDC dc_;
};

/// Keeps an object selected into a device context for the life of this object.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_{dc}, before_{SelectObject(dc, object)} {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(dc_, before_); }

private:
    HDC dc_;
    HGDIOBJ before_;
};

}  // namespace qxterm::win32
