#include "zpt_ssh/win32/client.h"

#include <array>
#include <system_error>
#include <thread>
#include <utility>

#include "common/quoting.h"
#include "common/win32/child.h"
#include "common/win32/console.h"
#include "zpt_ssh/client_arguments.h"
#include "zpt_ssh/last_words.h"
#include "zpt_ssh/port_owners.h"
#include "zpt_ssh/win32/listeners.h"

namespace zpt {
namespace {

/// The file's full path; empty when it is not there. Without the folder it would be looked for in the current
/// one, where anybody may have put a program.
std::string fileIn(const std::string& folder, const char* name) {
    std::string path = folder.empty() ? folder : folder + name;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) path.clear();
    return path;
}

Handle openNothing() {
    SECURITY_ATTRIBUTES attributes = inheritable();
    return validHandle(CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                                   OPEN_EXISTING, 0, nullptr));
}

void readToEnd(HANDLE pipe, LastWords& words) {
    std::array<char, 4096> block;
    DWORD count = 0;
    while (ReadFile(pipe, block.data(), static_cast<DWORD>(block.size()), &count, nullptr) != 0) {
        words.feed({block.data(), count});
    }
}

}  // namespace

std::optional<ClientCommand> findClient(const SshRequest& request) {
    const std::string plink = fileIn(ownFolder(), "plink.exe");
    if (!plink.empty()) return ClientCommand{plink, commandLine(plink, plinkArguments(request))};
    const std::string openSsh = fileIn(systemFolder(), "OpenSSH\\ssh.exe");
    if (!openSsh.empty()) return ClientCommand{openSsh, commandLine(openSsh, openSshArguments(request))};
    return std::nullopt;
}

struct Client::Process {
    Handle job = endingJob();
    Pipe output;  ///< what the client prints
    Handle handle;
    LastWords words;
    std::thread reader;
};

Client::Client() : process_{std::make_unique<Process>()} {}

Client::~Client() {
    process_->job.reset();
    if (process_->reader.joinable()) process_->reader.join();
}

bool Client::start(const ClientCommand& command) {
    Process& self = *process_;
    const Handle nothing = openNothing();
    if (!self.job || !nothing || !self.output.read) return false;
    keepFromChildren(self.output.read);

    STARTUPINFOA info{};
    info.cb = sizeof info;
    info.dwFlags = STARTF_USESTDHANDLES;
    info.hStdInput = nothing.get();
    info.hStdOutput = self.output.write.get();
    info.hStdError = self.output.write.get();
    std::string line = command.commandLine;  // the system may write into it
    PROCESS_INFORMATION created{};
    if (CreateProcessA(command.file.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                       nullptr, &info, &created) == 0) {
        return false;
    }
    self.handle.reset(created.hProcess);
    const Handle thread{created.hThread};
    if (!runInJob(self.job.get(), self.handle.get(), thread.get())) return false;
    self.output.write.reset();
    try {
        self.reader = std::thread{readToEnd, self.output.read.get(), std::ref(self.words)};
    } catch (const std::system_error&) {
        return false;  // the job ends the client
    }
    return true;
}

bool Client::running() const { return WaitForSingleObject(process_->handle.get(), 0) == WAIT_TIMEOUT; }

bool Client::listensOn(Loopback address, std::uint16_t port) const {
    return clientAnswers(listenersOf(address, port), [this](std::uint32_t owner) {
        const Handle process{OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, owner)};
        BOOL inside = FALSE;
        return process && IsProcessInJob(process.get(), process_->job.get(), &inside) != 0 && inside != FALSE;
    });
}

void Client::end() { TerminateJobObject(process_->job.get(), exitCodeOfTerminated); }

ClientEnd Client::wait() {
    Process& self = *process_;
    WaitForSingleObject(self.handle.get(), INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(self.handle.get(), &code);
    end();  // what the client left behind, and with it the last hold on the pipe
    self.reader.join();
    return {code, self.words.line()};
}

}  // namespace zpt
