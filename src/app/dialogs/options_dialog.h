#pragma once

#include "platform/form.h"

namespace qxterm {

/// Edits the settings of the current profile on a copy, which takes effect with OK. Shown modally by the
/// Connection menu, New, and connectPort when a profile lacks its host.
extern Form frmOptions;

/// Connects the dialog's events. Called at start-up.
void connectOptionsDialog();

}  // namespace qxterm
