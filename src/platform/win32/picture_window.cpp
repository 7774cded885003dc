#include "platform/win32/picture_window.h"

#include <algorithm>
#include <memory>

#include "platform/win32/accessible_screen.h"
#include "platform/win32/frames.h"
#include "platform/win32/guarded.h"
#include "platform/win32/keyboard.h"
#include "platform/win32/picture_native.h"
#include "platform/win32/screen_watchers.h"
#include "platform/win32/twips.h"

namespace qxterm::win32 {
namespace {

constexpr const char* className = "QxtermPicture";
constexpr std::int16_t leftButton = 1;
/// Lines that a whole page of the wheel setting "one screen at a time" moves.
constexpr UINT pageLines = 24;
constexpr UINT defaultWheelLines = 3;

using MouseEvent = Event<std::int16_t, std::int16_t, std::int32_t, std::int32_t>;

void raiseMouse(const MouseEvent& event, std::int16_t buttons, POINT at) {
    event.raise(buttons, heldShifts(), twipsX(at.x), twipsY(at.y));
}

/// What was covered is painted anew and shown at once. The cells are marked before the system forgets about
/// the region.
void paint(PictureBox& box, HWND window) {
    PictureNative& native = *nativeOf(box);
    if (!native.updateRegion) native.updateRegion = Region{CreateRectRgn(0, 0, 0, 0)};
    CellSet uncovered;
    const auto take = [&](const CellArea& cells) {
        uncovered.add(cells);
        box.invalidate(cells);
    };
    const bool known = native.updateRegion && GetUpdateRgn(window, native.updateRegion.get(), FALSE) != ERROR;
    if (!known || !forEachArea(native.state, native.updateRegion.get(), take)) take(allCells);
    native.presenter.forget(uncovered);
    PAINTSTRUCT details{};
    BeginPaint(window, &details);
    EndPaint(window, &details);
    showPictures();
}

void buttonDown(PictureBox& box, HWND window, POINT at) {
    PictureNative& native = *nativeOf(box);
    if (GetFocus() != window) SetFocus(window);
    native.dragging = true;
    native.lastMouse = at;
    SetCapture(window);
    raiseMouse(box.onMouseDown, leftButton, at);
}

void buttonUp(PictureBox& box, POINT at) {
    PictureNative& native = *nativeOf(box);
    if (!native.dragging) return;
    native.dragging = false;
    ReleaseCapture();
    raiseMouse(box.onMouseUp, leftButton, at);
}

void mouseMoved(PictureBox& box, POINT at) {
    PictureNative& native = *nativeOf(box);
    native.lastMouse = at;
    raiseMouse(box.onMouseMove, native.dragging ? leftButton : std::int16_t{0}, at);
}

/// The window has the keyboard, so that readers of the screen find it; the keys are its form's.
bool isKey(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto standard = [&] { return DefWindowProcA(window, message, wParam, lParam); };
    const LONG_PTR stored = GetWindowLongPtrA(window, GWLP_USERDATA);
    if (stored == 0) return standard();
    PictureBox& box = *reinterpret_cast<PictureBox*>(stored);
    if (box.native == nullptr) return standard();
    switch (message) {
        case WM_PAINT: paint(box, window); return 0;
        case WM_ERASEBKGND: return 1;  // every pixel is some cell's, and is drawn as that
        case WM_LBUTTONDOWN: buttonDown(box, window, pointOf(lParam)); return 0;
        case WM_LBUTTONUP: buttonUp(box, pointOf(lParam)); return 0;
        case WM_MOUSEMOVE: mouseMoved(box, pointOf(lParam)); return 0;
        // Another window took the mouse, a message box perhaps: the drag ends where it was.
        case WM_CAPTURECHANGED: buttonUp(box, nativeOf(box)->lastMouse); return 0;
        case WM_SETFOCUS: screenGotFocus(box); return 0;
        case WM_KILLFOCUS: screenLostFocus(); return 0;
        case WM_GETOBJECT:
            if (static_cast<LONG>(lParam) != OBJID_CLIENT) return standard();
            return accessibleScreen(box, wParam);
        case WM_DESTROY: endAccessibleScreen(window); return standard();
        default:
            return isKey(message) ? SendMessageA(GetParent(window), message, wParam, lParam) : standard();
    }
}

void registerClass() {
    WNDCLASSA description{};
    // The device context stays the window's own, with font and colours selected.
    description.style = CS_OWNDC;
    description.lpfnWndProc = Guarded<windowProcedure>::call;
    description.hInstance = instance();
    description.hCursor = LoadCursor(nullptr, IDC_IBEAM);
    description.lpszClassName = className;
    RegisterClassA(&description);
}

RECT clientArea(const PictureBox& box) {
    RECT client{};
    if (box.native != nullptr) GetClientRect(box.native->window, &client);
    return client;
}

int wheelLines() {
    UINT lines = defaultWheelLines;
    SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    return static_cast<int>(std::min(lines, pageLines));
}

}  // namespace

Control::Native* createPictureWindow(PictureBox& box, HWND parent) {
    static const bool registered = (registerClass(), true);
    (void)registered;
    PictureState& state = stateOf(box);
    HWND const window =
        CreateWindowExA(0, className, "", WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 0, 0, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(box.id())), instance(), nullptr);
    if (window == nullptr) return new Control::Native{nullptr};
    auto native = std::make_unique<PictureNative>(state, window);
    if (!native->presenter.canDraw()) {
        DestroyWindow(window);
        return new Control::Native{nullptr};
    }
    box.resetPicture();
    SetWindowLongPtrA(native->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&box));
    return native.release();
}

void focusScreen(const Form& form) {
    const Control* const control = firstOf(form, ControlKind::pictureBox);
    if (control != nullptr && control->native != nullptr && control->visible())
        SetFocus(control->native->window);
}

void wheel(const Form& form, WPARAM wParam) {
    Control* const control = firstOf(form, ControlKind::pictureBox);
    if (control == nullptr || control->native == nullptr) return;
    auto& box = static_cast<PictureBox&>(*control);
    PictureNative& native = *nativeOf(box);
    // Fine wheels turn by less than a notch (120) at a time.
    native.wheelRest += static_cast<std::int16_t>(highWord(wParam)) * wheelLines();
    const int lines = native.wheelRest / WHEEL_DELTA;
    native.wheelRest -= lines * WHEEL_DELTA;
    if (lines != 0) box.onWheel.raise(static_cast<std::int16_t>(-lines));
}

}  // namespace qxterm::win32

namespace qxterm {

std::int32_t PictureBox::scaleWidth() const { return win32::twipsX(win32::clientArea(*this).right); }
std::int32_t PictureBox::scaleHeight() const { return win32::twipsY(win32::clientArea(*this).bottom); }

}  // namespace qxterm
