#include "platform/win32/picture_state.h"
#include "platform/win32/twips.h"

namespace qxterm {
namespace win32 {
namespace {

void selectFont(PictureNative& native, HFONT font) {
    if (native.font == font) return;
    SelectObject(native.dc, font);
    native.font = font;
}

void applyTextColours(PictureNative& native) {
    const COLORREF text = native.state.colour(native.state.text);
    const COLORREF back = native.state.colour(native.state.textBackground);
    if (native.textColour != text) {
        native.textColour = text;
        SetTextColor(native.dc, text);
    }
    if (native.backColour != back) {
        native.backColour = back;
        SetBkColor(native.dc, back);
    }
}

void fillWith(PictureNative& native, const RECT& area, COLORREF colour) {
    if (native.brushColour != colour) {
        native.brushColour = colour;
        SetDCBrushColor(native.dc, colour);
    }
    FillRect(native.dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void rasterise(const PictureBox& box, const PixelRect& area, DWORD operation) {
    const PictureNative* const native = nativeOf(box);
    if (native == nullptr || area.empty()) return;
    PatBlt(native->dc, area.left, area.top, area.width(), area.height(), operation);
}

RECT clientArea(const PictureBox& box) {
    RECT client{};
    if (box.native != nullptr) GetClientRect(box.native->window, &client);
    return client;
}

}  // namespace
}  // namespace win32

using namespace win32;

std::int32_t PictureBox::scaleWidth() const { return twipsX(clientArea(*this).right); }
std::int32_t PictureBox::scaleHeight() const { return twipsY(clientArea(*this).bottom); }

void PictureBox::setColourTable(const std::array<Rgb, 8>& table) {
    PictureState& state = stateOf(*this);
    for (std::size_t n = 0; n < table.size(); ++n) {
        state.colours[n] = RGB(table[n].red, table[n].green, table[n].blue);
    }
}

void PictureBox::setBackground(std::uint8_t index) { stateOf(*this).background = index; }
void PictureBox::setTextColour(std::uint8_t index) { stateOf(*this).text = index; }
void PictureBox::setTextBackground(std::uint8_t index) { stateOf(*this).textBackground = index; }

void PictureBox::setOpaque(bool opaque) {
    stateOf(*this).opaque = opaque;
    if (native != nullptr) SetBkMode(nativeOf(*this)->dc, opaque ? OPAQUE : TRANSPARENT);
}

void PictureBox::drawText(const PixelRect& cells, std::string_view text, TextFont font,
                          const std::int32_t* advances) {
    PictureNative* const box = nativeOf(*this);
    if (box == nullptr) return;
    PictureState& state = box->state;
    int lowered = 0;
    if (font == TextFont::terminal && state.terminalFont) {
        selectFont(*box, state.terminalFont.get());
    } else if (state.bold) {
        selectFont(*box, boldFont(state));
        lowered = state.boldOffset;
    } else {
        selectFont(*box, normalFont(state));
    }
    applyTextColours(*box);
    const RECT area = toRect(cells);
    ExtTextOutA(box->dc, area.left, area.top + lowered, ETO_OPAQUE | ETO_CLIPPED, &area, text.data(),
                static_cast<UINT>(text.size()), advances);
}

void PictureBox::fill(const PixelRect& area, Raster raster) {
    rasterise(*this, area, raster == Raster::blackness ? BLACKNESS : WHITENESS);
}

void PictureBox::clear(const PixelRect& area) {
    PictureNative* const box = nativeOf(*this);
    if (box == nullptr || area.empty()) return;
    fillWith(*box, toRect(area), box->state.colour(box->state.background));
}

void PictureBox::invert(const PixelRect& area, Inversion /*of*/) { rasterise(*this, area, DSTINVERT); }

void PictureBox::drawLine(std::int32_t x, std::int32_t y, std::int32_t width) {
    PictureNative* const box = nativeOf(*this);
    if (box == nullptr || width <= 0) return;
    fillWith(*box, {x, y, x + width, y + 1}, box->state.colour(box->state.text));
}

void PictureBox::scroll(const PixelRect& area, std::int32_t dy) {
    if (native == nullptr || area.empty() || dy == 0) return;
    const RECT within = toRect(area);
    ScrollWindow(native->window, 0, dy, &within, &within);
}

void PictureBox::update() {
    if (native != nullptr) UpdateWindow(native->window);
}

void PictureBox::refresh() {
    if (native != nullptr) InvalidateRect(native->window, nullptr, TRUE);
}

PixelRect PictureBox::clipBox() const {
    const PictureNative* const box = nativeOf(*this);
    const RECT clip = box != nullptr && box->painting ? box->clip : clientArea(*this);
    return {clip.left, clip.top, clip.right, clip.bottom};
}

bool PictureBox::invalidAt(std::int32_t x, std::int32_t y) const {
    PictureNative* const box = nativeOf(*this);
    if (box == nullptr) return false;
    if (!box->updateRegion) box->updateRegion = Region{CreateRectRgn(0, 0, 0, 0)};
    GetUpdateRgn(box->window, box->updateRegion.get(), FALSE);
    return PtInRegion(box->updateRegion.get(), x, y) != 0;
}

void PictureBox::attachMessageHook(bool attached) {
    hooked_ = attached;
    if (native != nullptr) nativeOf(*this)->hooked = attached;
}

}  // namespace qxterm
