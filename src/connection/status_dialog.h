#pragma once

#include "platform/form.h"

namespace qxterm {

/// The dialog that is shown, modally, while a connection is being made: a line of text (lblConn), a time-out
/// (tmrConn) and a button (cmdCancel). It closes by itself when the session is up or the time is over;
/// however it closes, an attempt that has not brought up a session is abandoned.
extern Form frmConn;

/// Connects the dialog's events. Called at start-up.
void connectStatusDialog();

}  // namespace qxterm
