#pragma once

#include <cstdint>
#include <vector>

#include "platform/headless/cell_grid.h"

namespace qxterm::headless {

/// Measures of a cell in pixels.
struct CellMeasures {
    std::int32_t width;
    std::int32_t height;
};

/// 7 x 15 at 9 points, 9 x 18 at 11, 8 x 16 at any other size.
[[nodiscard]] CellMeasures measuresAt(float points);

/// The platform's own record of a picture box.
struct Picture {
    CellGrid grid;
    float points = 10;
    bool bold = false;
    bool opaque = true;
    std::uint8_t background = 0;
    std::uint8_t textColour = 7;
    std::uint8_t textBackground = 0;
    std::vector<PixelRect> invalid;   ///< areas that wait for a paint
    std::vector<PixelRect> painting;  ///< areas of the paint in progress
    bool inPaint = false;
};

}  // namespace qxterm::headless
