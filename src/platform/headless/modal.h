#pragma once

#include <vector>

namespace qxterm {
class Form;
}

namespace qxterm::headless {

/// Runs one more event (a script's next command). False when none will ever come.
using NextEvent = bool (*)();

/// What modal windows and the event loop live on; null stands for one that has no event.
void setNextEvent(NextEvent next);

/// Thrown out of a modal window that would wait for ever. Not an error of the program: only the one who feeds
/// the events catches it.
struct EndOfScript {};

/// The forms that run a modal loop, the innermost last. A form stands in it once for each loop.
[[nodiscard]] const std::vector<Form*>& modalForms();

/// Deepest nesting of modal loops: further ones would only be reached by a script that tries to exhaust the
/// stack. Beyond it a modal loop returns at once, its form unloaded.
inline constexpr std::size_t deepestModal = 64;

void resetModal();

}  // namespace qxterm::headless
