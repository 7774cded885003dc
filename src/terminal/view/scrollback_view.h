#pragma once

namespace qxterm {

/// The scroll bar's value changed: moves the view over the scrollback. Both report under their own names.
void vscterm_Change();
void vscterm_Scroll();
/// Turns of the mouse wheel: lines to move, negative back into the scrollback.
void wheelView(short lines);
/// The view is live again without drawing; for start values.
void resetScrollbackView();

}  // namespace qxterm
