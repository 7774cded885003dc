#pragma once

#include "platform/form.h"

namespace qxterm {

/// Opens a saved profile, or saves the current one under a name. Its caption is its mode.
extern Form frmprof;

/// Both open the dialog in a mode and return when it has closed. Called by the Profile menu and where unsaved
/// changes are to be kept.
void showOpenProfile();
void showSaveProfileAs();

/// Connects the dialog's events. Called at start-up.
void connectProfileDialog();

}  // namespace qxterm
