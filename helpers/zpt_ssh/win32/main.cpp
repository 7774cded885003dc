#include <array>
#include <string>

#include "common/win32/console.h"
#include "common/win32/system.h"
#include "zpt_ssh/request.h"
#include "zpt_ssh/win32/client.h"

namespace {

constexpr const char* helperName = "zpt_ssh";
constexpr const char* loginVariable = "ZPT_SSH_LOGIN";

// Exit codes of the helper itself; every other one is the client's.
constexpr int wrongCommandLine = 2;
constexpr int noClient = 3;
constexpr int clientNotStarted = 4;

/// Takes the login name out of the environment: the client need not have it there too.
std::string takeLogin() {
    std::array<char, 1024> value{};
    const DWORD length =
        GetEnvironmentVariableA(loginVariable, value.data(), static_cast<DWORD>(value.size()));
    SetEnvironmentVariableA(loginVariable, nullptr);
    // A longer one is no login name; the check of the request will say so.
    return length < value.size() ? std::string{value.data(), length} : std::string(value.size(), '?');
}

}  // namespace

int main(int count, char** values) {
    zpt::hardenProcess();
    const auto parsed = zpt::parseSshRequest(zpt::argumentsOf(count, values), takeLogin());
    if (!parsed.good()) {
        zpt::complain(helperName, parsed.complaint);
        return wrongCommandLine;
    }
    const auto client = zpt::findClient(parsed.request);
    if (!client) {
        zpt::complain(helperName, "there is neither plink.exe beside this program nor OpenSSH in the system");
        return noClient;
    }
    const auto end = zpt::runClient(*client);
    if (!end) {
        zpt::complain(helperName, "the SSH client cannot be started: " + client->file);
        return clientNotStarted;
    }
    if (end->exitCode != 0 || !end->lastLine.empty()) {
        zpt::complain(helperName, "the SSH client ended with code " + std::to_string(end->exitCode) +
                                      (end->lastLine.empty() ? "" : ": " + end->lastLine));
    }
    return static_cast<int>(end->exitCode);
}
