#pragma once

#include <cstdint>
#include <string>

#include "platform/picture.h"

namespace qxterm::scenario {

/// Size of the drawing in pixels.
inline constexpr int svgCellWidth = 9;
inline constexpr int svgCellHeight = 18;
inline constexpr int svgWidth = pictureColumns * svgCellWidth;
inline constexpr int svgHeight = pictureRows * svgCellHeight;

/// What the picture box shows, as an SVG drawing: colours, weight, underlines, line drawing, cursor and
/// selection. background: of the cells that nothing was drawn on.
[[nodiscard]] std::string pictureAsSvg(const Picture& picture, std::uint8_t background);

}  // namespace qxterm::scenario
