#pragma once

#include <array>
#include <cstdint>

#include "platform/geometry.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/line_record.h"

namespace qxterm {

/// Height and width of a cell in pixels, set by calcSize.
extern std::int32_t lineHeight;
extern std::int32_t charWidth;
/// Size of the screen in pixels.
extern std::int16_t screenWidthPixels;
extern std::int16_t screenHeightPixels;
/// Advance of each of a text call's characters, in pixels; entry 0 is not used.
extern std::array<std::int32_t, screenColumns + 1> charAdvances;
/// The scrolling region on the window, in pixels. Recomputed whenever the region or the cell size changes.
extern PixelRect scrollRect;
/// Twips per pixel, told by main.
extern std::int16_t g_iTwipsX;
extern std::int16_t g_iTwipsY;
void setTwipsPerPixel(std::int16_t x, std::int16_t y);

/// Applies the current profile's font size, measures the cell, sizes picture box, scroll bar and window to 80
/// x 25 cells and recreates the terminal font. Called at start-up.
void calcSize(PictureBox& picture, ScrollBar& bar);
/// The same for the screen that is shown, and repaints it. Called when a profile with another font size is
/// read or chosen.
void resizeScreen();
/// Nothing measured, no window laid out, 15 twips per pixel; for start values.
void resetCellSize();
/// Recomputes scrollRect.
void setScrollRect();
/// Places the function-key bar (shown while mode::keyBarShown is set) and sizes the window around screen,
/// scroll bar and bar.
void layOutWindow();

}  // namespace qxterm
