#pragma once

#include <cstdint>

#include "platform/headless/cell_grid.h"
#include "platform/picture_box.h"

namespace qxterm::headless {

/// What drawing calls do besides being counted: change the window's cells, or nothing at all (for measuring
/// the caller's own cost).
enum class Drawing : std::uint8_t { cells, countOnly };
void setDrawing(Drawing drawing);

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
void clearDrawCounts();

/// The window's cells and the colour of those that nothing was drawn on. The picture box's form must be
/// loaded.
[[nodiscard]] const CellGrid& cellsOf(const PictureBox& box);
[[nodiscard]] std::uint8_t backgroundOf(const PictureBox& box);

/// True while a loaded picture box may have invalid areas.
extern bool paintsWaiting;
/// Delivers the paint messages that wait, one for each visible picture box.
void deliverPaints();
/// Another window uncovered the whole picture box: its paint message waits for the next turn of the event
/// loop.
void uncover(PictureBox& box);

/// Drawing on cells, counts 0.
void resetDrawing();

namespace detail {
extern Drawing drawing;
extern DrawCounts counts;
}  // namespace detail

}  // namespace qxterm::headless
