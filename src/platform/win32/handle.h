#pragma once

#include "common/win32/handle.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

template <class T>
struct GdiTraits {
    using Type = T;
    static constexpr T none = nullptr;
    static void release(Type object) { DeleteObject(object); }
};

struct MemoryDcTraits {
    using Type = HDC;
    static constexpr HDC none = nullptr;
    static void release(Type dc) { DeleteDC(dc); }
};

using Font = zpt::Owner<GdiTraits<HFONT>>;
using Brush = zpt::Owner<GdiTraits<HBRUSH>>;
using Pen = zpt::Owner<GdiTraits<HPEN>>;
using Region = zpt::Owner<GdiTraits<HRGN>>;
using Bitmap = zpt::Owner<GdiTraits<HBITMAP>>;
using KernelHandle = zpt::Handle;
using MemoryDc = zpt::Owner<MemoryDcTraits>;

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
