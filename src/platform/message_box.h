#pragma once

#include <cstdint>
#include <string_view>

#include "platform/program_title.h"

namespace qxterm {

enum class Buttons : std::uint8_t { ok = 0, okCancel = 1, yesNoCancel = 3, yesNo = 4, retryCancel = 5 };
enum class Icon : std::uint8_t { none = 0, critical = 16, question = 32, information = 64 };
enum class Answer : std::uint8_t { ok = 1, cancel = 2, retry = 4, yes = 6, no = 7 };

/// A modal message box over the topmost window of the program; timers and socket events go on while it is
/// open. Escape answers Cancel where there is one, OK where OK is alone. Once the program is ending there is
/// nobody to answer: no box then, and Cancel, No or OK at once; the same when the system has no room for it.
/// Nothing is raised: a lack of memory is told by boxes too.
Answer messageBox(std::string_view text, std::string_view title, Buttons buttons, Icon icon);

}  // namespace qxterm
