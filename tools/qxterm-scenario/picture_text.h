#pragma once

#include <string>

#include "platform/picture.h"

namespace qxterm::scenario {

/// One character of the normal font, as UTF-8: the program's texts are Windows-1252.
[[nodiscard]] std::string utf8(char character);
/// The glyph of a line-drawing character ("j" to "x"), as UTF-8.
[[nodiscard]] std::string utf8OfLineDrawing(char character);
/// True when the cell shows a glyph of line drawing; its text() is the character.
[[nodiscard]] bool isGlyph(const PictureCell& cell);

/// What the picture box shows, as 25 lines of UTF-8 without trailing blanks, and the place of the cursor,
/// both from 1. Colours, weight and inversion are not told.
[[nodiscard]] std::string pictureAsText(const Picture& picture);

}  // namespace qxterm::scenario
