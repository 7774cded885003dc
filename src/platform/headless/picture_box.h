#pragma once

#include <cstdint>

#include "platform/picture_box.h"

namespace qxterm::headless {

/// Drawing calls since the last clearing; characters: those of all text calls.
struct DrawCounts {
    std::uint64_t text = 0;
    std::uint64_t characters = 0;
    std::uint64_t fill = 0;
    std::uint64_t clear = 0;
    std::uint64_t invert = 0;
    std::uint64_t line = 0;
    std::uint64_t scroll = 0;
};
[[nodiscard]] const DrawCounts& drawCounts();
/// Counts from 0 on. Nothing is counted before the first call after a reset.
void clearDrawCounts();

/// Measures of a cell in pixels.
struct CellMeasures {
    std::int32_t width;
    std::int32_t height;
};
/// 7 x 15 at 9 points, 9 x 18 at 11, 8 x 16 at any other size.
[[nodiscard]] CellMeasures measuresAt(float points);

/// True while a loaded picture box may have invalid cells.
extern bool paintsWaiting;
/// Delivers the paint messages that wait, one for each visible picture box.
void deliverPaints();
/// Another window uncovered the whole picture box: its paint message waits for the next turn of the event
/// loop.
void uncover(PictureBox& box);

/// Counts 0, and none from now on.
void resetDrawing();

}  // namespace qxterm::headless
