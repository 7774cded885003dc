#pragma once

namespace qxterm {

/// Shows the current profile's name in the window's caption and on the task bar. Called after each change of
/// the name.
void setCaption();

}  // namespace qxterm
