#pragma once

#include <cstdint>

#include "terminal/model/line_record.h"

namespace qxterm {

/// True in the phase in which blinking text is blank. Flipped by the text-blink timer.
extern bool textBlinkOff;
/// Told which columns of a window row were just drawn or blanked while a selection is shown; else empty.
extern void (*lineDrawn)(std::int32_t row, std::int32_t first, std::int32_t last);

/// Draws a line from the start column to its used length in runs of equal attribute words. Reports as
/// "paintLine".
void paintLine(const ScreenLine& line, std::int16_t start, std::int32_t row);
/// The same for a line of the view, whole; behind its used length the row is cleared to the picture box's
/// background.
void paintWholeLine(const ScreenLine& line, std::int32_t row);
/// Draws columns first..last (held within the line) in runs of equal attribute words; each run with its own
/// colours and font.
void drawCells(const ScreenLine& line, std::int32_t first, std::int32_t last, std::int32_t row);
/// The same for columns that lie within the line and have one word.
void drawRun(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row);
/// Draws a shift-out run: the line-drawing characters with the terminal font, the others with the normal one.
/// Reports as "lineDraw".
void lineDraw(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row);

/// Fills cells of the window as an erase does: black, or white in reverse screen.
void blankArea(std::int32_t column, std::int32_t row, std::int32_t columns, std::int32_t rows);

}  // namespace qxterm
