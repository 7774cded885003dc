#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/backend.h"
#include "platform/run_time_error.h"
#include "platform/win32/picture_native.h"
#include "platform/win32/twips.h"

namespace qxterm {
namespace win32 {
namespace {

constexpr int pointsPerInch = 72;
constexpr const char* terminalFace = "QXTERM";

Font makeFont(const std::string& face, float points, int weight) {
    const ScreenDc screen;
    const auto dots = static_cast<float>(GetDeviceCaps(screen.get(), LOGPIXELSY));
    // Negative: the height of the characters without what leads between lines.
    const int height = -static_cast<int>(std::lround(points * dots / pointsPerInch));
    return Font{CreateFontA(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                            CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, face.c_str())};
}

int ascentOf(HDC dc, HFONT font) {
    const Selected selected{dc, font};
    TEXTMETRICA metrics{};
    GetTextMetricsA(dc, &metrics);
    return metrics.tmAscent;
}

/// The fonts are about to change, and with them all that stands on the glass.
void deselectFonts(const PictureBox& box) {
    PictureNative* const native = nativeOf(box);
    if (native == nullptr) return;
    native->presenter.deselectFonts();
    native->presenter.forget();
}

/// Error 7 when the system has no room for the new font; then the former one stays, with all that was
/// measured with it.
void changeFont(const PictureBox& box, std::string face, float points) {
    PictureState& state = stateOf(box);
    Font font = makeFont(face, points, FW_NORMAL);
    if (!font && state.normalFont) throw RunTimeError{errors::outOfMemory};
    deselectFonts(box);
    state.fontName = std::move(face);
    state.points = points;
    state.normalFont = std::move(font);
    state.boldFont.reset();
}

SIZE measure(const PictureBox& box, std::string_view text) {
    const ScreenDc screen;
    const Selected selected{screen.get(), normalFont(stateOf(box))};
    SIZE size{};
    GetTextExtentPoint32A(screen.get(), text.data(), static_cast<int>(text.size()), &size);
    return size;
}

}  // namespace

PictureState& stateOf(const PictureBox& box) {
    if (box.native != nullptr) return nativeOf(box)->state;
    static std::vector<std::unique_ptr<PictureState>> all;
    for (const auto& state : all) {
        if (state->box == &box) return *state;
    }
    all.push_back(std::make_unique<PictureState>());
    all.back()->box = &box;
    return *all.back();
}

HFONT normalFont(PictureState& state) {
    if (!state.normalFont) state.normalFont = makeFont(state.fontName, state.points, FW_NORMAL);
    return state.normalFont.get();
}

HFONT boldFont(PictureState& state) {
    if (!state.boldFont) {
        state.boldFont = makeFont(state.fontName, state.points, FW_BOLD);
        if (!state.boldFont) return nullptr;
        const ScreenDc screen;
        state.boldOffset =
            ascentOf(screen.get(), normalFont(state)) - ascentOf(screen.get(), state.boldFont.get());
    }
    return state.boldFont.get();
}

}  // namespace win32

void PictureBox::setFontName(std::string_view face) {
    const win32::PictureState& state = win32::stateOf(*this);
    if (state.fontName != face) win32::changeFont(*this, std::string{face}, state.points);
}

void PictureBox::setFontSize(float points) {
    const win32::PictureState& state = win32::stateOf(*this);
    const bool same = std::abs(state.points - points) < 0.01F;
    if (!same) win32::changeFont(*this, state.fontName, points);
}

std::int32_t PictureBox::textHeight(std::string_view text) const {
    return win32::twipsY(win32::measure(*this, text).cy);
}

std::int32_t PictureBox::textWidth(std::string_view text) const {
    return win32::twipsX(win32::measure(*this, text).cx);
}

void PictureBox::createTerminalFont(std::int32_t height, std::int32_t width) {
    deleteTerminalFont();
    win32::stateOf(*this).terminalFont = win32::Font{
        CreateFontA(height, width, 0, 0, 0, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, win32::terminalFace)};
}

void PictureBox::deleteTerminalFont() {
    win32::deselectFonts(*this);
    win32::stateOf(*this).terminalFont.reset();
}

void backend::cellSizeChanged(PictureBox& box, std::int32_t width, std::int32_t height,
                              const std::array<std::int32_t, pictureColumns>& advances) {
    win32::PictureState& state = win32::stateOf(box);
    state.cellWidth = width;
    state.cellHeight = height;
    std::copy(advances.begin(), advances.end(), state.advances.begin());
    if (win32::PictureNative* const native = win32::nativeOf(box)) native->presenter.forget();
}

void PictureBox::setColourTable(const std::array<Rgb, 8>& table) {
    win32::PictureState& state = win32::stateOf(*this);
    for (std::size_t n = 0; n < table.size(); ++n) {
        state.colours[n] = RGB(table[n].red, table[n].green, table[n].blue);
    }
}

void PictureBox::setOpaque(bool opaque) {
    win32::stateOf(*this).opaque = opaque;
    if (win32::PictureNative* const window = win32::nativeOf(*this)) window->presenter.setOpaque(opaque);
}

}  // namespace qxterm
