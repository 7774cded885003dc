#include "zpt_ssh/client_arguments.h"

#include "common/names.h"

namespace zpt {
namespace {

/// Told to use one IP version the clients use it for the listening end too, so that its address must fit.
std::string forwardOf(const SshRequest& request) {
    const std::string loopback = request.ipVersion == 6 ? "[::1]" : "127.0.0.1";
    return loopback + ':' + std::to_string(request.forwardPort) + std::string{forwardHost} +
           std::to_string(request.remotePort);
}

void addVersionAndLogin(std::vector<std::string>& arguments, const SshRequest& request) {
    if (request.ipVersion != 0) arguments.push_back('-' + std::to_string(request.ipVersion));
    if (request.login.empty()) return;
    arguments.emplace_back("-l");
    arguments.push_back(request.login);
}

}  // namespace

std::vector<std::string> plinkArguments(const SshRequest& request) {
    std::vector<std::string> arguments{"-ssh", "-batch", "-no-antispoof",
                                       "-N",   "-P",     std::to_string(request.sshPort)};
    addVersionAndLogin(arguments, request);
    arguments.emplace_back("-L");
    arguments.push_back(forwardOf(request));
    arguments.push_back(request.host);
    return arguments;
}

std::vector<std::string> openSshArguments(const SshRequest& request) {
    std::vector<std::string> arguments{"-N", "-T", "-p", std::to_string(request.sshPort)};
    addVersionAndLogin(arguments, request);
    for (const char* setting :
         {"BatchMode=yes", "StrictHostKeyChecking=yes", "ExitOnForwardFailure=yes", "GatewayPorts=no",
          "ForwardAgent=no", "ForwardX11=no", "PermitLocalCommand=no", "ServerAliveInterval=30"}) {
        arguments.emplace_back("-o");
        arguments.emplace_back(setting);
    }
    arguments.emplace_back("-L");
    arguments.push_back(forwardOf(request));
    arguments.emplace_back("--");
    arguments.push_back(request.host);
    return arguments;
}

}  // namespace zpt
