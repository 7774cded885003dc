#pragma once

#include <string_view>

/// What the terminal and its helpers call by the same names.
namespace zpt {

/// The helpers' program files, without extension.
inline constexpr const char* sshHelper = "zpt_ssh";
inline constexpr const char* relayHelper = "zpt_tnetd";

/// The environment variable in which zpt_ssh finds the login name: other programs of the user can read a
/// command line, but not this.
inline constexpr const char* loginVariable = "ZPT_SSH_LOGIN";
/// The environment variable in which zpt_ssh finds the number of an event, to be set when the terminal can
/// connect.
inline constexpr const char* readyVariable = "ZPT_SSH_READY";

/// What stands in a forward between the port on this machine and the one behind it, of the host's own
/// loopback.
inline constexpr std::string_view forwardHost = ":localhost:";
/// The first argument of zpt_tnetd: the version of the order of those behind it.
inline constexpr std::string_view relayOrder = "2";

}  // namespace zpt
