#pragma once

#include <cstdint>

namespace qxterm {

/// The characters that a shift-out run draws with the terminal font.
inline constexpr char firstLineDrawing = 'j';
inline constexpr char lastLineDrawing = 'x';

[[nodiscard]] constexpr bool isLineDrawing(char c) { return c >= firstLineDrawing && c <= lastLineDrawing; }

/// Code of a line-drawing character's glyph in the terminal font: 16 for "j" to 30 for "x". These codes mean
/// the same in every code page and are none of the characters that text output treats specially.
[[nodiscard]] constexpr char lineDrawingGlyph(char c) { return static_cast<char>(c - firstLineDrawing + 16); }

}  // namespace qxterm
