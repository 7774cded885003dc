#pragma once

#include <cstdint>

#include "diag/error_trap.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/attributes.h"
#include "terminal/model/line_record.h"

namespace qxterm {

/// True in the phase in which blinking text is blank. Flipped by the text-blink timer, with
/// setTextBlinkOff.
extern bool textBlinkOff;
void setTextBlinkOff(bool off);

/// True while lines, or a drag, are to be shown selected: lineDrawn and windowScrolled (paint.h) are told
/// then. Written by watchDrawing, which the selection calls.
extern bool drawingWatched;
void watchDrawing(bool watched);
/// Told which columns of a window row were just drawn or blanked; filled at start-up.
extern void (*lineDrawn)(std::int32_t row, std::int32_t first, std::int32_t last);

/// True for the words whose look follows from their bits alone: plain, bold or underlined text in colours
/// that exist.
[[nodiscard]] constexpr bool isOrdinary(std::int16_t word) {
    constexpr int missingColours = 0x8800;  // the highest bits of background and foreground
    return (word & (missingColours | attrFlag::blink | attrFlag::shiftOut)) == 0;
}

/// The look of an ordinary word: its flags for bold and underline are the picture's bits of style.
[[nodiscard]] inline PictureCell ordinaryLook(std::int16_t word) {
    const auto bits = static_cast<std::uint32_t>(static_cast<std::uint16_t>(word));
    std::uint32_t colours = bits >> 8U;
    if (reversed(word)) colours = (colours >> 4U | colours << 4U) & 0xFFU;
    return PictureCell::styled(colours, bits & (attrFlag::bold | attrFlag::underline));
}

/// The short way of a run of ordinary words, of which nothing can fail. Returns false, with nothing done, for
/// any other.
[[nodiscard]] inline bool drawOrdinaryRun(const ScreenLine& line, std::int32_t first, std::int32_t count,
                                          std::int32_t row) {
    const std::int16_t word = line.attrs[static_cast<std::size_t>(first + 1)];
    if (!isOrdinary(word) || !shortWaysOpen()) [[unlikely]]
        return false;
    picterm.drawTextLike(row, first, {line.text.data() + first, static_cast<std::size_t>(count)},
                         ordinaryLook(word));
    return true;
}

/// Draws a line from the start column to its used length in runs of equal attribute words. Reports as
/// "paintLine".
void paintLine(const ScreenLine& line, std::int16_t start, std::int32_t row);
/// The same for a line of the view, whole; behind its used length the row is cleared to the picture box's
/// background.
void paintWholeLine(const ScreenLine& line, std::int32_t row);
/// Draws columns first..last (held within the line) in runs of equal attribute words; each run with its own
/// colours and font.
void drawCells(const ScreenLine& line, std::int32_t first, std::int32_t last, std::int32_t row);
/// drawRun's general way: any word, and whoever is to be told.
void drawRunAndTell(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row);
/// drawCells for columns that lie within the line and have one word.
inline void drawRun(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row) {
    if (drawingWatched || !drawOrdinaryRun(line, first, count, row)) [[unlikely]]
        drawRunAndTell(line, first, count, row);
}
/// Draws a shift-out run: the line-drawing characters with the terminal font, the others with the normal one.
/// Reports as "lineDraw".
void lineDraw(const ScreenLine& line, std::int32_t first, std::int32_t count, std::int32_t row);

/// Fills cells of the window as an erase does: black, or white in reverse screen.
void blankArea(std::int32_t column, std::int32_t row, std::int32_t columns, std::int32_t rows);

}  // namespace qxterm
