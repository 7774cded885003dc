#pragma once

#include <string>
#include <string_view>

namespace qxterm::clipboard {

/// The text on the clipboard, one character a byte, empty when there is none or another program holds the
/// clipboard.
[[nodiscard]] std::string text();
/// Replaces the clipboard's content by plain text. Error 70 when another program holds the clipboard for
/// longer than a quarter of a second.
void setText(std::string_view text);
/// Empties the clipboard. Error 70 as above.
void clear();
[[nodiscard]] bool hasText();
[[nodiscard]] bool hasAnything();

}  // namespace qxterm::clipboard
