#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>
#include <thread>

#include "common/names.h"
#include "common/win32/child.h"
#include "common/win32/console.h"
#include "common/win32/system.h"
#include "zpt_ssh/request.h"
#include "zpt_ssh/win32/client.h"
#include "zpt_ssh/win32/forward.h"

namespace {

// Exit codes of the helper itself; every other one is the client's.
constexpr int wrongCommandLine = 2;
constexpr int noClient = 3;
constexpr int clientNotStarted = 4;
constexpr int portTaken = 5;

/// For the host's last words to reach the terminal when the client has ended.
constexpr std::chrono::seconds longestFarewell{2};

/// Takes a value out of the environment: the client need not have it there too.
std::string takeVariable(const char* name) {
    std::array<char, 1024> value{};
    const DWORD length = GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
    SetEnvironmentVariableA(name, nullptr);
    // A longer one is neither a login name nor a number; the checks of both will say so.
    return length < value.size() ? std::string{value.data(), length} : std::string(value.size(), '?');
}

/// The event by which the terminal learns that it can connect; none when nobody waits for it.
zpt::Handle takeReadiness() {
    HANDLE const event = zpt::handleOfNumber(takeVariable(zpt::readyVariable));
    if (event == nullptr || SetHandleInformation(event, HANDLE_FLAG_INHERIT, 0) == 0) return {};
    return zpt::validHandle(event);
}

int refuse(int code, const std::string& why) {
    zpt::complain(zpt::sshHelper, why);
    return code;
}

/// False when the system has no thread left.
bool serveAside(zpt::Forward& forward, zpt::Client& client) {
    try {
        std::thread{[&] { forward.serve(client); }}.detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

/// Runs the client, and the terminal's way to it, until the client ends; returns the client's exit code.
int runSession(const zpt::ClientCommand& command, zpt::Forward& forward) {
    zpt::Client client;
    if (!client.start(command) || !serveAside(forward, client))
        return refuse(clientNotStarted, "the SSH client cannot be started: " + command.file);
    const zpt::ClientEnd end = client.wait();
    forward.waitIdle(longestFarewell);
    if (end.exitCode != 0 || !end.lastLine.empty()) {
        zpt::complain(zpt::sshHelper, "the SSH client ended with code " + std::to_string(end.exitCode) +
                                          (end.lastLine.empty() ? "" : ": " + end.lastLine));
    }
    // The serving thread ends with the process: nothing of what it uses may go before.
    ExitProcess(end.exitCode);
}

/// Before all other code: what watches the stack calls the system, too.
[[gnu::constructor(101)]] void hardenFirst() { zpt::hardenProcess(); }

}  // namespace

int main(int count, char** values) {
    const auto parsed =
        zpt::parseSshRequest(zpt::argumentsOf(count, values), takeVariable(zpt::loginVariable));
    if (!parsed.good()) return refuse(wrongCommandLine, parsed.complaint);
    zpt::SshRequest request = parsed.request;

    // The address family that the client is told to use is the one that it listens with.
    const auto address = request.ipVersion == 6 ? zpt::Loopback::six : zpt::Loopback::four;
    const std::uint16_t port = request.forwardPort;
    if (!zpt::startSockets() || (request.forwardPort = zpt::freeLoopbackPort(address)) == 0)
        return refuse(portTaken, "this machine's loopback has no free port");
    const zpt::Handle readiness = takeReadiness();
    zpt::Forward forward{port, address, request.forwardPort, readiness.get()};
    if (!forward.take()) return refuse(portTaken, "port " + std::to_string(port) + " is another program's");

    const auto client = zpt::findClient(request);
    if (!client)
        return refuse(noClient, "there is neither plink.exe beside this program nor OpenSSH in the system");
    return runSession(*client, forward);
}
