#include "platform/win32/presenter.h"

#include "platform/display.h"
#include "platform/win32/native.h"

namespace qxterm::win32 {

Presenter::Presenter(PictureState& state, HWND window) : state_{state}, window_{window}, dc_{GetDC(window)} {
    SetTextAlign(dc_, TA_LEFT | TA_TOP | TA_NOUPDATECP);
    setOpaque(state.opaque);
}

void Presenter::setOpaque(bool opaque) { SetBkMode(dc_, opaque ? OPAQUE : TRANSPARENT); }

void Presenter::show(PictureBox& box) {
    if (!box.changed() || state_.cellWidth <= 0 || state_.cellHeight <= 0) return;
    if (!canBeSeen()) {
        // A paint message follows when that changes.
        (void)box.takeFrame();
        glass_.forget();
        return;
    }
    // Pixels that wait for a paint must not be scrolled somewhere else.
    const bool mayScroll = GetUpdateRect(window_, nullptr, FALSE) == 0;
    glass_.show(box.takeFrame(), box.background(), *this, mayScroll);
    GdiFlush();
}

/// False while the window is hidden, minimised or covered as a whole.
bool Presenter::canBeSeen() const {
    if (IsWindowVisible(window_) == 0 || IsIconic(GetAncestor(window_, GA_ROOT)) != 0) return false;
    RECT seen{};
    const int kind = GetClipBox(dc_, &seen);
    return kind != NULLREGION && kind != ERROR;
}

RECT Presenter::pixels(int row, int column, int count) const {
    const LONG left = column * state_.cellWidth;
    const LONG top = row * state_.cellHeight;
    return {left, top, left + count * state_.cellWidth, top + state_.cellHeight};
}

void Presenter::selectFont(HFONT font) {
    if (font_ == font) return;
    SelectObject(dc_, font);
    font_ = font;
}

void Presenter::deselectFonts() {
    if (font_ == nullptr) return;
    SelectObject(dc_, GetStockObject(SYSTEM_FONT));
    font_ = nullptr;
}

void Presenter::fill(const RECT& area, std::uint8_t colour) {
    if (dcBrushIndex_ != colour) {
        dcBrushIndex_ = colour;
        SetDCBrushColor(dc_, state_.colour(colour));
    }
    FillRect(dc_, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void Presenter::text(int row, int column, std::string_view codes, const TextLook& look, bool underlined) {
    int lowered = 0;
    if (look.font == TextFont::terminal && state_.terminalFont) {
        selectFont(state_.terminalFont.get());
    } else if (look.bold) {
        selectFont(boldFont(state_));
        lowered = state_.boldOffset;
    } else {
        selectFont(normalFont(state_));
    }
    if (dcTextIndex_ != look.fg) {
        dcTextIndex_ = look.fg;
        SetTextColor(dc_, state_.colour(look.fg));
    }
    if (dcBackIndex_ != look.bg) {
        dcBackIndex_ = look.bg;
        SetBkColor(dc_, state_.colour(look.bg));
    }
    const RECT area = pixels(row, column, static_cast<int>(codes.size()));
    ExtTextOutA(dc_, area.left, area.top + lowered, ETO_OPAQUE | ETO_CLIPPED, &area, codes.data(),
                static_cast<UINT>(codes.size()), state_.advances.data());
    if (!underlined) return;
    const LONG top = underlineTop(row, state_.cellHeight, display::twipsPerPixelY());
    fill({area.left, top, area.right, top + 1}, look.fg);
}

void Presenter::blank(int row, int column, int count, std::uint8_t colour) {
    fill(pixels(row, column, count), colour);
}

void Presenter::invert(int row, int column, int count, bool bar) {
    RECT area = pixels(row, column, count);
    if (bar) area.top = area.bottom - underlineCursorHeight;
    PatBlt(dc_, area.left, area.top, area.right - area.left, area.bottom - area.top, DSTINVERT);
}

void Presenter::scroll(int first, int last, int by, CellSet& lost) {
    RECT area = pixels(first, 0, pictureColumns);
    area.bottom = pixels(last, 0, pictureColumns).bottom;
    if (!lost_) lost_ = Region{CreateRectRgn(0, 0, 0, 0)};
    if (ScrollDC(dc_, 0, by * state_.cellHeight, &area, &area, lost_.get(), nullptr) == 0) {
        lost.add({0, first, pictureColumns, last - first + 1});
        return;
    }
    // Where the pixels came from was covered by another window, perhaps.
    forEachArea(state_, lost_.get(), [&](const CellArea& cells) { lost.add(cells); });
}

CellArea cellsTouched(const PictureState& state, const RECT& area) {
    const auto width = state.cellWidth;
    const auto height = state.cellHeight;
    if (width <= 0 || height <= 0) return {};
    const LONG left = std::max<LONG>(area.left, 0) / width;
    const LONG top = std::max<LONG>(area.top, 0) / height;
    return {left, top, (area.right + width - 1) / width - left, (area.bottom + height - 1) / height - top};
}

std::vector<RECT> rectanglesOf(HRGN region) {
    const DWORD size = GetRegionData(region, 0, nullptr);
    if (size < sizeof(RGNDATAHEADER)) return {};
    std::vector<char> bytes(size);
    auto* const data = reinterpret_cast<RGNDATA*>(bytes.data());
    if (GetRegionData(region, size, data) == 0) return {};
    const auto* const first = reinterpret_cast<const RECT*>(data->Buffer);
    return {first, first + data->rdh.nCount};
}

}  // namespace qxterm::win32
