#include "connection/ssh_helpers.h"

#include <array>

#include "common/names.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "connection/auto_login.h"
#include "connection/ssh_ports.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"
#include "platform/event_loop.h"
#include "platform/process.h"

namespace qxterm {
namespace {

constinit HelperProcess sshClient{zpt::sshHelper, zpt::readyVariable};
constinit HelperProcess relay{zpt::relayHelper};

/// Counts the starts: a wait that events have overtaken by another start is over.
std::uint32_t starts = 0;

// Milliseconds.
constexpr std::int32_t longestForwardWait = 10000;
constexpr std::int32_t forwardCheckPeriod = 100;
constexpr std::int32_t longestEndWait = 5000;

bool knownVersion(std::int16_t ipVersion) { return ipVersion == 4 || ipVersion == 6; }

/// A trap of its own: one helper's failure does not keep the other.
void endHelper(HelperProcess& helper) {
    trapped("endSshHelpers", [&] {
        if (!helper.recorded()) return;
        const std::uint32_t error = helper.terminate();
        helper.wait(longestEndWait);
        (void)helper.exitCode();
        helper.close();
        if (error != 0) writeLog("TerminateProcess(proc.hProcess,lErr) failed lErr=" + std::to_string(error));
    });
}

/// Connecting before the forward is there would only be refused, or meet another program that has taken the
/// port since it was found free. The client tells when it listens: once the login on the SSH server has
/// succeeded, or after some seconds in which that was not decided.
void awaitForward() {
    const std::uint32_t start = starts;
    for (std::int32_t waited = 0; waited < longestForwardWait; waited += forwardCheckPeriod) {
        if (sshClient.ended() || sshClient.ready()) break;
        sshClient.waitRunningEvents(forwardCheckPeriod);
        // The user may have disconnected meanwhile, or even connected anew.
        if (start != starts || !sshClient.recorded() || eventLoop::ending()) return;
    }
    if (!sshClient.ended()) return;
    endAutoLogin();
    endSshHelpers();
}

}  // namespace

std::string sshClientCommand(const SshRoute& route) {
    std::string command = zpt::sshHelper;
    command += " -no-antispoof ";
    command += " -P ";
    command += route.sshPort;
    if (knownVersion(route.ipVersion)) command += " -" + std::to_string(route.ipVersion);
    command += " -ssh -L ";
    command += std::to_string(route.forwardPort);
    command += zpt::forwardHost;
    command += "23 ";
    command += route.host;
    return command;
}

std::string relayCommand(const SshRoute& route) {
    std::string command = zpt::relayHelper;
    command += ' ';
    command += zpt::relayOrder;
    command += ' ';
    command += std::to_string(route.localPort);
    command += ' ';
    command += std::to_string(route.forwardPort);
    command += ' ';
    command += std::to_string(route.ipVersion);
    command += ' ';
    command += route.login;
    return command;
}

std::string profileSshPort() { return readSetting(CurrentProfile.name, "SSHnetport", "22"); }

void StartSSH(const std::string& host, const std::string& login, std::int32_t localPort) {
    ErrorTrap trap{"StartSSH"};
    trap.run([&] {
        ++starts;
        endSshHelpers();
        std::int16_t version = comnet2.addressFamily(host);
        if (!knownVersion(version)) version = 0;
        const std::string sshPort = profileSshPort();
        const std::int32_t forwardPort = CN_NetStat(localPort);
        if (forwardPort == 0) return;

        const SshRoute route{sshPort, version, localPort, forwardPort, host, login};
        bool started = false;
        trap.step([&] {
            const std::array environment{EnvironmentValue{zpt::loginVariable, login}};
            started = sshClient.start(sshClientCommand(route), StandardHandles::pipes, environment);
        });
        if (!started) return;
        (void)relay.start(relayCommand(route), StandardHandles::none);
        const std::uint32_t own = starts;
        awaitForward();
        // The local port was taken between the two searches, and the relay could not have it: whoever has it
        // is not to be given the password.
        if (own == starts && sshClient.recorded() && forwardPort != localPort && relay.ended())
            endAutoLogin();
    });
}

bool sshHelperRecorded() { return sshClient.recorded() || relay.recorded(); }

void endSshHelpers() {
    endHelper(sshClient);
    endHelper(relay);
}

}  // namespace qxterm
