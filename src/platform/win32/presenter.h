#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/glass.h"
#include "platform/picture_box.h"
#include "platform/win32/picture_state.h"

namespace qxterm::win32 {

/// Brings a picture onto the glass, by GDI text straight into the window of the picture box. Pixels, fonts,
/// the device context and what is selected into it are known here alone.
class Presenter final : private Surface {
public:
    /// The window's own device context (CS_OWNDC).
    Presenter(PictureState& state, HWND window);

    /// Draws what differs from the glass; nothing while no pixel of the window can be seen.
    void show(PictureBox& box);
    /// Nobody knows what stands there any more.
    void forget() { glass_.forget(); }
    void forget(const CellSet& cells) { glass_.forget(cells); }
    /// Takes the fonts out of the device context, so that they may be deleted.
    void deselectFonts();
    void setOpaque(bool opaque);

private:
    void text(int row, int column, std::string_view codes, const TextLook& look, bool underlined) override;
    void blank(int row, int column, int count, std::uint8_t colour) override;
    void invert(int row, int column, int count, bool bar) override;
    void scroll(int first, int last, int by, CellSet& lost) override;

    [[nodiscard]] bool canBeSeen() const;
    [[nodiscard]] RECT pixels(int row, int column, int count) const;
    void selectFont(HFONT font);
    void fill(const RECT& area, std::uint8_t colour);

    PictureState& state_;
    HWND window_;
    HDC dc_;
    Glass glass_;
    Region lost_;
    HFONT font_ = nullptr;
    // What was last set in the device context; a colour that no table has at first.
    static constexpr std::uint8_t none = 0xFF;
    std::uint8_t dcTextIndex_ = none;
    std::uint8_t dcBackIndex_ = none;
    std::uint8_t dcBrushIndex_ = none;
};

/// The cells that an area of pixels touches.
[[nodiscard]] CellArea cellsTouched(const PictureState& state, const RECT& area);
/// The rectangles that a region is made of.
[[nodiscard]] std::vector<RECT> rectanglesOf(HRGN region);
/// Calls take(CellArea) for each of them.
template <class Take>
void forEachArea(const PictureState& state, HRGN region, Take&& take) {
    for (const RECT& area : rectanglesOf(region)) take(cellsTouched(state, area));
}

}  // namespace qxterm::win32
