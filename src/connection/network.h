#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Network connections: the events of the socket `comnet2`, and the receive loop behind them, which is that
/// of SSH connections too.
namespace qxterm {

/// Arrivals that have run the receive loop, from the main window's load on; stays at 32767.
extern std::int16_t packetCount;
/// True while the receive loop runs: an arrival in between only adds to pendingBytes.
extern bool receiving;
/// Bytes announced and not yet read.
extern std::int32_t pendingBytes;
/// Set by the first receive round of the window's life; no disconnection clears it.
extern bool firstDataSeen;

/// The state above back to 0. Called when the main window loads.
void clearReceiveState();

/// The connection is up: the session is active.
void comnet2_Connect();
/// bytesTotal bytes are waiting; -1 does nothing. Hands them to the interpreter. Reports as "DataArrival";
/// after a failure the session is ended.
void comnet2_DataArrival(std::int32_t bytesTotal);
/// The peer closed the connection: tells so and ends the session.
void comnet2_Close();
/// Deliberately silent: a failed attempt shows itself by the status dialog's time-out, a lost connection by
/// Close.
void comnet2_Error(std::int16_t number, std::string_view description);

/// The answer to a telnet command; goes out only while the socket is connected.
void sendTelnetAnswer(std::string_view bytes);

/// Traces the address of the current profile's host. Without one the user is sent to the options, and the
/// answer is false.
[[nodiscard]] bool hostGiven();
/// How long a connection of the socket may take, in milliseconds.
[[nodiscard]] std::int32_t connectPatience();

/// The next `count` received bytes, fewer when fewer are there.
[[nodiscard]] std::string GetNetworkBytes(std::int32_t count);

}  // namespace qxterm
