#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/picture_box.h"
#include "platform/win32/handle.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {

inline constexpr std::uint8_t colourCount = 8;

/// What a picture box has been told, with or without a window.
struct PictureState {
    const PictureBox* box = nullptr;
    std::string fontName = "Courier New";
    float points = 10;
    std::array<COLORREF, colourCount> colours{};
    bool opaque = false;
    std::int32_t cellWidth = 0;  ///< pixels
    std::int32_t cellHeight = 0;
    std::array<INT, pictureColumns> advances{};  ///< pixels of a row's characters
    Font normalFont;
    Font boldFont;
    Font terminalFont;
    /// Pixels that the bold font has to be lowered by for both to stand on one base line.
    int boldOffset = 0;

    [[nodiscard]] COLORREF colour(std::uint8_t index) const { return colours[index % colourCount]; }
};

[[nodiscard]] PictureState& stateOf(const PictureBox& box);

/// The fonts, made when they are first asked for after a change of name or size.
[[nodiscard]] HFONT normalFont(PictureState& state);
[[nodiscard]] HFONT boldFont(PictureState& state);

}  // namespace qxterm::win32
