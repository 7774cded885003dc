#pragma once

#include <cstdint>
#include <string>

namespace qxterm {

/// End points in cell columns and virtual line numbers; the end column is exclusive. selEndCol -1: there is
/// no selection. Written by the two files whose routines stand here, selection.cpp and selection_drag.cpp.
extern std::int32_t selStartCol;
extern std::int32_t selStartRow;
extern std::int32_t selEndCol;
extern std::int32_t selEndRow;

/// Lines were marked: enables Copy, Paste and Clear of the Edit menu. Filled at start-up.
extern void (*enableEditItems)();

/// Operations of selFunc.
namespace selOperation {
inline constexpr std::int16_t getRange = 1;
inline constexpr std::int16_t setRange = 2;
inline constexpr std::int16_t clear = 3;
inline constexpr std::int16_t getText = 4;
}  // namespace selOperation

/// Per-line access to the marks of the line with a virtual number. Every operation but setRange gives -1, -1
/// and no text for a line without a mark. Error 9 for a number outside 0..524.
void selFunc(std::int16_t operation, std::int16_t line, std::int32_t& first, std::int32_t& last,
             std::string& text);
/// The selected text: lines without their trailing blanks, joined by CR LF; blank lines add nothing.
[[nodiscard]] std::string getSel();
/// The end points in reading order, columns held within 0..80, rows within 0..524.
void orderSel(std::int32_t& firstCol, std::int32_t& firstRow, std::int32_t& lastCol, std::int32_t& lastRow);
/// Shows or removes the inverted selection: afterwards the window shows what the marks, or the drag in
/// progress, say.
void showSel();

/// Mouse events of picterm: button mask, shift mask, x and y in twips.
void picterm_MouseDown(std::int16_t button, std::int16_t shift, std::int32_t x, std::int32_t y);
void picterm_MouseMove(std::int16_t button, std::int16_t shift, std::int32_t x, std::int32_t y);
void picterm_MouseUp(std::int16_t button, std::int16_t shift, std::int32_t x, std::int32_t y);
/// One step of scrolling while the mouse is held outside the page.
void tmrSelect_Timer();

/// The selection becomes what lies between two end points, in either order: marks its lines and enables Copy.
/// There must be none, and the end points must not be the same. Shows nothing yet.
void selectBetween(std::int32_t startCol, std::int32_t startRow, std::int32_t endCol, std::int32_t endRow);
/// True when lines are marked.
[[nodiscard]] bool hasSelection();
/// Marks cleared, nothing shown, selEndCol -1.
void removeSelection();
/// No selection, without drawing; for start values.
void resetSelection();

}  // namespace qxterm
