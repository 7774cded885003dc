#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The two helper programs of an SSH session: the client zpt_ssh, which forwards a local port through the
/// secure connection, and zpt_tnetd, which relays the session's local port to that one.
namespace qxterm {

/// What the helpers are started for.
struct SshRoute {
    std::string_view sshPort;
    std::int16_t ipVersion;  ///< 4 or 6; anything else is unknown
    std::int32_t localPort;
    std::int32_t forwardPort;
    std::string_view host;
    std::string_view login;
};
[[nodiscard]] std::string sshClientCommand(const SshRoute& route);
[[nodiscard]] std::string relayCommand(const SshRoute& route);

/// The current profile's SSH port as it stands in the file, "22" when it has none. The profile record's port
/// does not do: it may hold changes that were not saved.
[[nodiscard]] std::string profileSshPort();

/// Starts both helpers on the first free port from localPort on and waits, with events running, until the
/// forwarded port answers or the client ends, 10 seconds at most. A client that has ended by then takes the
/// relay with it, and the automatic login is over. Nothing is started without a free port; a second start
/// ends the helpers of the first.
void StartSSH(const std::string& host, const std::string& login, std::int32_t localPort);

/// True while a helper is recorded, whether or not it still runs.
[[nodiscard]] bool sshHelperRecorded();
/// Ends both helpers and forgets them. Called when an SSH session ends, and for a client that ended at once.
void endSshHelpers();

}  // namespace qxterm
