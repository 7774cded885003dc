#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/connect_type.h"

/// The one session that the terminal has at a time: begun from a transport's row, which it keeps until it has
/// ended. Keys, Paste, Send Break, the status dialog and the menus ask here, so that bytes go where the
/// session is, and its own transport is closed, whatever profile the user has chosen meanwhile.
namespace qxterm {

struct Transport;

/// TRUE while a session is up. Written by sessionIsUp, endSession and forgetSession only.
extern bool g_bConnectActive;

/// The row of the session that is up or being set up; without one, that of the current profile's type.
[[nodiscard]] const Transport& sessionTransport();
/// The type of that row.
[[nodiscard]] std::int16_t g_iConnectType();
/// A session was started and has not ended: it is up, or being set up.
[[nodiscard]] bool sessionStarted();

/// An attempt is under way: from now on the session keeps this row, and what was received before is not its
/// output. Called by the rows.
void startSession(const Transport& transport);
/// The session has come up. Called by the transports.
void sessionIsUp();
/// Ends the session or attempt: its transport is stopped, then all that belonged to it is forgotten. Called
/// by disconnectPort.
void endSession();
/// No session, with nothing to stop; for start values.
void forgetSession();

/// Sends typed text; a loop connection interprets it here. Paste uses it too.
void sendTyped(std::string_view text);

/// Writes to the trace log what becomes of an attempt.
void traceAttempt(const std::string& text);

}  // namespace qxterm
