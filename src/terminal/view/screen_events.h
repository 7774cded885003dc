#pragma once

namespace qxterm {

/// Ties the events of the picture box, the scroll bar and the selection's timer to their routines. Called at
/// start-up, ahead of everything else.
void connectScreenEvents();

}  // namespace qxterm
