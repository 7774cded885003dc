#pragma once

#include "platform/form.h"

namespace qxterm {

/// The picture with the version: shown while the program starts, and as the About box.
extern Form frmSplash;

/// Shows the About box, with its OK button, and returns when it has closed.
void showAbout();

/// Connects the form's events. Called at start-up.
void connectSplash();

}  // namespace qxterm
