#pragma once

#include <string>
#include <vector>

#include "zpt_ssh/request.h"

/// The arguments with which the SSH clients do what is asked for: forward a port of this machine's loopback,
/// run nothing on the host, and ask nobody anything. A host key that is not known, and a login that would
/// need an answer, end them.
namespace zpt {

/// For plink.
[[nodiscard]] std::vector<std::string> plinkArguments(const SshRequest& request);
/// For OpenSSH's ssh.
[[nodiscard]] std::vector<std::string> openSshArguments(const SshRequest& request);

}  // namespace zpt
