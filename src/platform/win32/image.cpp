#include "platform/win32/image.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/backend.h"
#include "platform/bitmap_file.h"
#include "platform/win32/files.h"
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

/// Not by the system's own reader, which may look for pixels behind the end of a file that was cut off.
Bitmap readPicture(const std::string& path) {
    constexpr std::size_t longest = std::size_t{16} * 1024 * 1024;
    const auto file = wholeFile(path, longest);
    const auto parts = file ? partsOfBitmap(*file) : std::nullopt;
    if (!parts) throw RunTimeError{errors::pathFileAccess};
    // The system wants the description at an even place.
    std::vector<std::uint32_t> description(parts->descriptionSize / sizeof(std::uint32_t));
    std::memcpy(description.data(), file->data() + parts->description, parts->descriptionSize);
    void* pixels = nullptr;
    Bitmap picture{CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(description.data()),
                                    DIB_RGB_COLORS, &pixels, nullptr, 0)};
    if (!picture) throw RunTimeError{errors::outOfMemory};
    std::memcpy(pixels, file->data() + parts->pixels, parts->pixelsSize);
    return picture;
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
    Bitmap picture = readPicture(path);
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
