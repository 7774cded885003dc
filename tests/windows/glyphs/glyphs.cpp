// How the system draws the line-drawing glyphs of QXTERM.ttf, which stands beside this program, at given cell
// sizes.
//
//   glyphs FILE WIDTH HEIGHT [WIDTH HEIGHT ...]
//
// The font is made and the text drawn as the program's picture box does it. FILE gets two rows of cells for
// each size, a character a pixel, blank for black, "#" for white and "?" for what is between: the glyphs with
// the codes 16 to 30, each drawn alone, and a run of text drawn with one call that holds each of them between
// crossings.

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr char firstGlyph = 16;
constexpr int glyphCount = 15;
constexpr char crossing = 'n' - 0x5a;
constexpr COLORREF white = RGB(255, 255, 255);

/// A picture in memory, drawn on as on a window.
class Canvas {
public:
    Canvas(int width, int height) : width_{width}, height_{height} {
        BITMAPINFO form{};
        form.bmiHeader.biSize = sizeof form.bmiHeader;
        form.bmiHeader.biWidth = width;
        form.bmiHeader.biHeight = -height;  // the first line is the topmost
        form.bmiHeader.biPlanes = 1;
        form.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
        pixels_ = static_cast<const COLORREF*>(bits);
        oldBitmap_ = SelectObject(dc_, bitmap_);
        SetTextColor(dc_, white);
        SetBkColor(dc_, RGB(0, 0, 0));
        SetBkMode(dc_, OPAQUE);
    }
    ~Canvas() {
        SelectObject(dc_, oldBitmap_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] HDC dc() const { return dc_; }

    bool write(std::FILE* file) const {
        GdiFlush();
        std::string bytes;
        for (int at = 0; at < width_ * height_; ++at) {
            const COLORREF colour = pixels_[at] & white;
            bytes += colour == 0 ? ' ' : colour == white ? '#' : '?';
        }
        return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }

private:
    int width_, height_;
    HDC dc_ = CreateCompatibleDC(nullptr);
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ oldBitmap_ = nullptr;
    const COLORREF* pixels_ = nullptr;
};

void drawText(HDC dc, const RECT& area, const std::string& text, const int* advances) {
    ExtTextOutA(dc, area.left, area.top, ETO_OPAQUE | ETO_CLIPPED, &area, text.data(),
                static_cast<UINT>(text.size()), advances);
}

bool drawSize(std::FILE* file, int width, int height) {
    constexpr int runLength = 2 * glyphCount + 1;
    const Canvas canvas{runLength * width, 2 * height};
    HFONT const font = CreateFontA(height, width, 0, 0, 0, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "QXTERM");
    HGDIOBJ const oldFont = SelectObject(canvas.dc(), font);
    std::array<int, runLength> advances{};
    advances.fill(width);
    std::string run{crossing};
    for (int number = 0; number < glyphCount; ++number) {
        const auto glyph = static_cast<char>(firstGlyph + number);
        const RECT cell{number * width, 0, (number + 1) * width, height};
        drawText(canvas.dc(), cell, {glyph}, advances.data());
        run += {glyph, crossing};
    }
    drawText(canvas.dc(), {0, height, runLength * width, 2 * height}, run, advances.data());
    const bool written = canvas.write(file);
    SelectObject(canvas.dc(), oldFont);
    DeleteObject(font);
    return written;
}

std::string fontFile() {
    std::array<char, MAX_PATH> own{};
    const std::string program{own.data(), GetModuleFileNameA(nullptr, own.data(), MAX_PATH)};
    return program.substr(0, program.find_last_of('\\') + 1) + "QXTERM.ttf";
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 4 || count % 2 != 0) return 2;
    if (AddFontResourceExA(fontFile().c_str(), FR_PRIVATE, nullptr) == 0) return 1;
    std::FILE* const file = std::fopen(arguments[1], "wb");
    if (file == nullptr) return 1;
    bool good = true;
    for (int at = 2; at < count; at += 2)
        good = drawSize(file, std::atoi(arguments[at]), std::atoi(arguments[at + 1])) && good;
    return std::fclose(file) == 0 && good ? 0 : 1;
}
