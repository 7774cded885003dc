#pragma once

#include "platform/win32/native.h"
#include "platform/win32/presenter.h"

namespace qxterm::win32 {

/// The window of a picture box.
struct PictureNative : Control::Native {
    PictureNative(PictureState& described, HWND created)
        : Native{created}, state{described}, presenter{described, created} {}

    PictureState& state;
    Presenter presenter;
    bool dragging = false;  ///< the left button went down here and is still held
    POINT lastMouse{};
    int wheelRest = 0;    ///< turn of the wheel that was too little for a line, in its own units
    Region updateRegion;  ///< scratch of the paint
};

/// Null while the form is not loaded.
[[nodiscard]] inline PictureNative* nativeOf(const PictureBox& box) {
    return static_cast<PictureNative*>(box.native);
}

}  // namespace qxterm::win32
