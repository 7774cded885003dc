#pragma once

#include "platform/timer.h"

namespace qxterm {

/// Steps the view while the mouse is held above the picture box or on the status row and below.
extern Timer tmrSelect;

/// True while the left button is held after a mouse-down on the screen.
[[nodiscard]] bool dragging();
/// Ends the drag without a selection.
void stopDrag();
/// No drag; for start values.
void resetDrag();

}  // namespace qxterm
