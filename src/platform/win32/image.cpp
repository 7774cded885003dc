#include "platform/win32/image.h"

#include "platform/backend.h"
#include "platform/win32/native.h"
#include "platform/win32/twips.h"

namespace qxterm {
namespace win32 {
namespace {

struct ImageNative : Control::Native {
    using Native::Native;
    Bitmap picture;
};

void paintImage(const Control& image, HDC dc) {
    const auto& native = static_cast<const ImageNative&>(*image.native);
    if (!native.picture) return;
    BITMAP details{};
    GetObjectA(native.picture.get(), sizeof details, &details);
    const TwipsRect place = image.place();
    const MemoryDc source{CreateCompatibleDC(dc)};
    const Selected selected{source.get(), native.picture.get()};
    BitBlt(dc, pixelsX(place.left), pixelsY(place.top), details.bmWidth, details.bmHeight, source.get(), 0, 0,
           SRCCOPY);
}

bool fileExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

Control::Native* createImage(HWND window) {
    ShowWindow(window, SW_HIDE);
    return new ImageNative{window};
}

bool paintImages(const Form& form, HDC dc) {
    if (firstOf(form, ControlKind::image) == nullptr) return false;
    RECT client{};
    GetClientRect(windowOf(form), &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    for (Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        if (control->kind() == ControlKind::image && control->native != nullptr && control->visible()) {
            paintImage(*control, dc);
        }
    }
    return true;
}

}  // namespace win32

void backend::loadPicture(Image& image, const std::string& path) {
    using namespace win32;
    if (!fileExists(path)) throw RunTimeError{errors::fileNotFound};
    Bitmap picture{static_cast<HBITMAP>(
        LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION))};
    if (!picture) throw RunTimeError{errors::pathFileAccess};
    if (image.native == nullptr) return;
    BITMAP details{};
    GetObjectA(picture.get(), sizeof details, &details);
    auto& native = static_cast<ImageNative&>(*image.native);
    native.picture = std::move(picture);
    SetWindowPos(native.window, nullptr, 0, 0, details.bmWidth, details.bmHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(windowOf(image.form()), nullptr, TRUE);
}

}  // namespace qxterm
