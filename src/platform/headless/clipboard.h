#pragma once

#include <string>
#include <string_view>

namespace qxterm::headless {

/// Another program puts text on the clipboard.
void putOnClipboard(std::string_view text);
/// Empty when there is none.
[[nodiscard]] std::string clipboardText();

void resetClipboard();

}  // namespace qxterm::headless
