#include "glass.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "config/profile_record.h"
#include "platform/win32/native.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"

namespace qxterm::probe {
namespace {

constexpr std::uint32_t colourBits = 0xFFFFFF;
constexpr int barHeight = 2;  // pixels of the underline cursor

COLORREF systemColour(std::uint8_t index) {
    const Rgb& colour = colourTable.at(index);
    return RGB(colour.red, colour.green, colour.blue);
}

HFONT makeFont(float points, int weight) {
    constexpr float pointsPerInch = 72;
    const win32::ScreenDc screen;
    const auto dots = static_cast<float>(GetDeviceCaps(screen.get(), LOGPIXELSY));
    LOGFONTA wish{};
    wish.lfHeight = -static_cast<LONG>(std::lround(points * dots / pointsPerInch));
    wish.lfWeight = weight;
    wish.lfCharSet = DEFAULT_CHARSET;
    wish.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    std::snprintf(wish.lfFaceName, sizeof wish.lfFaceName, "Courier New");
    return CreateFontIndirectA(&wish);
}

HFONT makeLineFont(int height, int width) {
    LOGFONTA wish{};
    wish.lfHeight = height;
    wish.lfWidth = width;
    wish.lfCharSet = DEFAULT_CHARSET;
    std::snprintf(wish.lfFaceName, sizeof wish.lfFaceName, "QXTERM");
    return CreateFontIndirectA(&wish);
}

int ascentOf(HFONT font) {
    const win32::ScreenDc screen;
    const win32::Selected selected{screen.get(), font};
    TEXTMETRICA metrics{};
    GetTextMetricsA(screen.get(), &metrics);
    return metrics.tmAscent;
}

/// The line under a cell: an eighth of its height above its end, reckoned in twips.
int underlineAt(int height) {
    constexpr int twipsPerInch = 1440;
    const win32::ScreenDc screen;
    const int twips = twipsPerInch / GetDeviceCaps(screen.get(), LOGPIXELSY);
    return (height * twips - height * twips / 8) / twips;
}

void fillArea(HDC dc, const RECT& area, COLORREF colour) {
    const win32::Brush brush{CreateSolidBrush(colour)};
    FillRect(dc, &area, brush.get());
}

/// For reading: a digit for each pure colour, "." for black.
std::string readable(const std::uint32_t* pixels, int count) {
    std::string text;
    for (int n = 0; n < count; ++n) {
        const std::uint32_t red = pixels[n] >> 16U & 0xFFU;
        const std::uint32_t green = pixels[n] >> 8U & 0xFFU;
        const std::uint32_t blue = pixels[n] & 0xFFU;
        const auto pure = [](std::uint32_t part) { return part == 0 || part == 0xFF; };
        if (!pure(red) || !pure(green) || !pure(blue)) {
            text += '?';
        } else {
            text += ".1234567"[(red & 1U) | (green & 2U) | (blue & 4U)];
        }
    }
    return text;
}

void writePpm(const std::string& path, int width, int height, const Looks::Pixels& pixels) {
    std::ofstream file{path, std::ios::binary};
    file << "P6\n" << width << ' ' << height << "\n255\n";
    std::string bytes;
    bytes.reserve(pixels.size() * 3);
    for (const std::uint32_t pixel : pixels) {
        for (const unsigned shift : {16U, 8U, 0U}) bytes += static_cast<char>(pixel >> shift & 0xFFU);
    }
    file << bytes;
}

}  // namespace

void Canvas::resize(int width, int height) {
    if (width == width_ && height == height_) return;
    if (!dc_) dc_ = win32::MemoryDc{CreateCompatibleDC(nullptr)};
    BITMAPINFO shape{};
    shape.bmiHeader.biSize = sizeof shape.bmiHeader;
    shape.bmiHeader.biWidth = width;
    shape.bmiHeader.biHeight = -height;
    shape.bmiHeader.biPlanes = 1;
    shape.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    win32::Bitmap next{CreateDIBSection(nullptr, &shape, DIB_RGB_COLORS, &bits, nullptr, 0)};
    SelectObject(dc_.get(), next.get());
    bitmap_ = std::move(next);
    pixels_ = static_cast<std::uint32_t*>(bits);
    width_ = width;
    height_ = height;
}

void Canvas::settle() {
    GdiFlush();
    const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(width_) * height_;
    for (std::ptrdiff_t n = 0; n < count; ++n) pixels_[n] &= colourBits;
}

void Looks::follow() {
    if (width_ == charWidth && height_ == lineHeight && points_ == CurrentProfile.fontSize) return;
    width_ = charWidth;
    height_ = lineHeight;
    points_ = CurrentProfile.fontSize;
    normal_ = win32::Font{makeFont(points_, FW_NORMAL)};
    bold_ = win32::Font{makeFont(points_, FW_BOLD)};
    lines_ = win32::Font{makeLineFont(height_, width_)};
    ascent_ = ascentOf(normal_.get());
    lineAscent_ = ascentOf(lines_.get());
    known_.clear();
    overhanging_.clear();
    findOverhang("normal", normal_.get(), 33, 254);
    findOverhang("bold", bold_.get(), 33, 254);
    findOverhang("lines", lines_.get(), 16, 30);
}

HFONT Looks::fontOf(const PictureCell& cell) const {
    if (cell.terminalFont()) return lines_.get();
    return cell.bold() ? bold_.get() : normal_.get();
}

/// One character, all fonts on the base line of the normal one; the lines fill their cells.
void Looks::draw(HDC dc, int left, int top, char code, HFONT font) const {
    const win32::Selected selected{dc, font};
    SetTextAlign(dc, TA_LEFT | TA_BASELINE);
    SetBkMode(dc, TRANSPARENT);
    TextOutA(dc, left, top + (font == lines_.get() ? lineAscent_ : ascent_), &code, 1);
}

/// A glyph may be wider than its cell. Then the same text, drawn in other pieces, looks different.
void Looks::findOverhang(const char* name, HFONT font, unsigned first, unsigned last) {
    Canvas room;
    room.resize(3 * width_, 3 * height_);
    SetTextColor(room.dc(), systemColour(7));
    for (unsigned code = first; code <= last; ++code) {
        fillArea(room.dc(), {0, 0, 3 * width_, 3 * height_}, systemColour(0));
        draw(room.dc(), width_, height_, static_cast<char>(code), font);
        room.settle();
        bool beside = false;
        // What lies above and below is cut off in any case.
        for (int y = height_; y < 2 * height_; ++y) {
            const std::uint32_t* const line = room.line(y);
            beside = beside || std::any_of(line, line + width_, [](auto pixel) { return pixel != 0; }) ||
                     std::any_of(line + 2 * width_, line + 3 * width_, [](auto pixel) { return pixel != 0; });
        }
        if (beside) overhanging_.push_back(name + (' ' + std::to_string(code)));
    }
}

const Looks::Pixels& Looks::plain(const PictureCell& cell, std::uint8_t background) {
    const std::uint8_t back = cell.drawn() ? cell.bg() : background;
    const std::uint32_t key = static_cast<unsigned char>(cell.code()) | cell.fg() << 8U | back << 12U |
                              (cell.bold() ? 1U << 16U : 0U) | (cell.underlined() ? 1U << 17U : 0U) |
                              (cell.terminalFont() ? 1U << 18U : 0U);
    Pixels& pixels = known_[key];
    if (!pixels.empty()) return pixels;
    canvas_.resize(width_, height_);
    HDC const dc = canvas_.dc();
    fillArea(dc, {0, 0, width_, height_}, systemColour(back));
    SetTextColor(dc, systemColour(cell.fg()));
    if (cell.drawn() && cell.code() != ' ') draw(dc, 0, 0, cell.code(), fontOf(cell));
    const int line = underlineAt(height_);
    if (cell.underlined()) fillArea(dc, {0, line, width_, line + 1}, systemColour(cell.fg()));
    canvas_.settle();
    pixels.assign(canvas_.line(0), canvas_.line(height_));
    return pixels;
}

const Looks::Pixels& Looks::of(const PictureCell& cell, std::uint8_t background) {
    const Pixels& upright = plain(cell, background);
    if (!cell.inverted() && !cell.barInverted()) return upright;
    Pixels& pixels = inverted_;
    pixels = upright;
    const auto invert = [](auto first, auto end) {
        std::transform(first, end, first, [](auto pixel) { return pixel ^ colourBits; });
    };
    if (cell.inverted()) invert(pixels.begin(), pixels.end());
    if (cell.barInverted())
        invert(pixels.end() - static_cast<std::ptrdiff_t>(barHeight) * width_, pixels.end());
    return pixels;
}

bool GlassCheck::copy() {
    looks_.follow();
    HWND const window = picterm.native->window;
    RECT client{};
    GetClientRect(window, &client);
    const int width = pictureColumns * looks_.width();
    const int height = pictureRows * looks_.height();
    if (client.right != width || client.bottom != height) return false;
    HDC const dc = GetDC(window);
    hidden_ = win32::Region{CreateRectRgn(0, 0, width, height)};
    const win32::Region seen{CreateRectRgn(0, 0, 0, 0)};
    constexpr INT visibleRegion = 4;  // in pixels of the display
    if (GetRandomRgn(dc, seen.get(), visibleRegion) != 1) return false;
    POINT corner{};
    ClientToScreen(window, &corner);
    OffsetRgn(seen.get(), -corner.x, -corner.y);
    anyHidden_ = CombineRgn(hidden_.get(), hidden_.get(), seen.get(), RGN_DIFF) != NULLREGION;
    found_.resize(width, height);
    BitBlt(found_.dc(), 0, 0, width, height, dc, 0, 0, SRCCOPY);
    found_.settle();
    ReleaseDC(window, dc);
    return true;
}

bool GlassCheck::hidden(int column, int row) const {
    if (!anyHidden_) return false;
    const RECT cell{column * looks_.width(), row * looks_.height(), (column + 1) * looks_.width(),
                    (row + 1) * looks_.height()};
    return RectInRegion(hidden_.get(), &cell) != 0;
}

bool GlassCheck::equal(const Looks::Pixels& wanted, int column, int row) const {
    const auto width = static_cast<std::size_t>(looks_.width());
    const std::uint32_t* pixels = wanted.data();
    for (int y = 0; y < looks_.height(); ++y, pixels += width) {
        const std::uint32_t* const there = found_.line(row * looks_.height() + y) + column * looks_.width();
        if (std::memcmp(pixels, there, width * sizeof *pixels) != 0) return false;
    }
    return true;
}

Json GlassCheck::difference(const Looks::Pixels& wanted, int column, int row) const {
    Json rows = Json::array();
    for (int y = 0; y < looks_.height(); ++y) {
        const std::uint32_t* const there = found_.line(row * looks_.height() + y) + column * looks_.width();
        rows.push_back(
            readable(wanted.data() + static_cast<std::ptrdiff_t>(y) * looks_.width(), looks_.width()) + "  " +
            readable(there, looks_.width()));
    }
    const PictureCell& cell = picterm.picture().at(column, row);
    return {{"row", row},
            {"column", column},
            {"character", scenario::jsonText(std::string(1, cell.text()))},
            {"fg", cell.fg()},
            {"bg", cell.bg()},
            {"style", cell.style()},
            {"cursor", cell.cursor()},
            {"drawn", cell.drawn()},
            {"wanted and found", rows}};
}

Json GlassCheck::compare() {
    leftOut_ = 0;
    for (int row = 0; row < pictureRows; ++row) {
        for (int column = 0; column < pictureColumns; ++column) {
            if (hidden(column, row)) {
                ++leftOut_;
                continue;
            }
            const Looks::Pixels& wanted = looks_.of(picterm.picture().at(column, row), picterm.background());
            if (!equal(wanted, column, row)) return difference(wanted, column, row);
        }
    }
    return Json::object();
}

void GlassCheck::save(const std::string& path) const {
    writePpm(path, found_.width(), found_.height(), {found_.line(0), found_.line(found_.height())});
}

void GlassCheck::saveWanted(const std::string& path) {
    Looks::Pixels all(static_cast<std::size_t>(found_.width()) * static_cast<std::size_t>(found_.height()));
    for (int row = 0; row < pictureRows; ++row) {
        for (int column = 0; column < pictureColumns; ++column) {
            const Looks::Pixels& cell = looks_.of(picterm.picture().at(column, row), picterm.background());
            for (int y = 0; y < looks_.height(); ++y) {
                const auto to = static_cast<std::ptrdiff_t>(row * looks_.height() + y) * found_.width() +
                                static_cast<std::ptrdiff_t>(column) * looks_.width();
                std::copy_n(cell.begin() + static_cast<std::ptrdiff_t>(y) * looks_.width(), looks_.width(),
                            all.begin() + to);
            }
        }
    }
    writePpm(path, found_.width(), found_.height(), all);
}

}  // namespace qxterm::probe
