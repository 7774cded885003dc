#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/picture_box.h"
#include "platform/win32/handle.h"
#include "platform/win32/native.h"

namespace qxterm::win32 {

inline constexpr std::uint8_t colourCount = 8;

/// What a picture box has been told, with or without a window.
struct PictureState {
    const PictureBox* box = nullptr;
    std::string fontName = "Courier New";
    float points = 10;
    bool bold = false;
    std::array<COLORREF, colourCount> colours{};
    std::uint8_t background = 0;
    std::uint8_t text = 7;
    std::uint8_t textBackground = 0;
    bool opaque = false;
    Font normalFont;
    Font boldFont;
    Font terminalFont;
    /// Pixels that the bold font has to be lowered by for both to stand on one base line.
    int boldOffset = 0;

    [[nodiscard]] COLORREF colour(std::uint8_t index) const { return colours[index % colourCount]; }
};

/// The window of a picture box, and what is selected into the device context that it owns.
struct PictureNative : Control::Native {
    explicit PictureNative(PictureState& described) : state{described} {}

    PictureState& state;
    HDC dc = nullptr;
    HFONT font = nullptr;
    COLORREF textColour = CLR_INVALID;
    COLORREF backColour = CLR_INVALID;
    COLORREF brushColour = CLR_INVALID;
    bool hooked = false;
    bool dragging = false;  ///< the left button went down here and is still held
    bool painting = false;
    RECT clip{};  ///< of the paint in progress
    POINT lastMouse{};
    int wheelRest = 0;    ///< turn of the wheel that was too little for a line, in its own units
    Region updateRegion;  ///< scratch of invalidAt
};

[[nodiscard]] PictureState& stateOf(const PictureBox& box);
/// Null while the form is not loaded.
[[nodiscard]] inline PictureNative* nativeOf(const PictureBox& box) {
    return static_cast<PictureNative*>(box.native);
}

/// The fonts, made when they are first asked for after a change of name or size.
[[nodiscard]] HFONT normalFont(PictureState& state);
[[nodiscard]] HFONT boldFont(PictureState& state);
/// Takes the fonts out of the device context, so that they may be deleted.
void deselectFonts(const PictureBox& box);

}  // namespace qxterm::win32
