#include "zpt_ssh/win32/client.h"

#include <array>
#include <thread>

#include "common/quoting.h"
#include "common/win32/console.h"
#include "common/win32/handle.h"
#include "zpt_ssh/client_arguments.h"
#include "zpt_ssh/last_words.h"

namespace zpt {
namespace {

bool isFile(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// A job that ends everything in it when its last handle, this one, is gone.
Handle endingJob() {
    Handle job{CreateJobObjectA(nullptr, nullptr)};
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job) SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

constexpr SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};

Handle openNothing() {
    SECURITY_ATTRIBUTES attributes = inheritable;
    return Handle{CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                              OPEN_EXISTING, 0, nullptr)};
}

/// Both ends of the pipe that takes the client's output.
struct OutputPipe {
    OutputPipe() {
        SECURITY_ATTRIBUTES attributes = inheritable;
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        if (CreatePipe(&readEnd, &writeEnd, &attributes, 0) == 0) return;
        read = Handle{readEnd};
        write = Handle{writeEnd};
        SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    }
    Handle read;
    Handle write;
};

void readToEnd(HANDLE pipe, LastWords& words) {
    std::array<char, 4096> block;
    DWORD count = 0;
    while (ReadFile(pipe, block.data(), static_cast<DWORD>(block.size()), &count, nullptr) != 0) {
        words.feed({block.data(), count});
    }
}

}  // namespace

std::optional<ClientCommand> findClient(const SshRequest& request) {
    const std::string plink = ownFolder() + "plink.exe";
    if (isFile(plink)) return ClientCommand{plink, commandLine(plink, plinkArguments(request))};
    const std::string openSsh = systemFolder() + "OpenSSH\\ssh.exe";
    if (isFile(openSsh)) return ClientCommand{openSsh, commandLine(openSsh, openSshArguments(request))};
    return std::nullopt;
}

std::optional<ClientEnd> runClient(const ClientCommand& command) {
    Handle job = endingJob();
    const Handle nothing = openNothing();
    OutputPipe output;
    if (!job || !nothing || !output.read) return std::nullopt;

    STARTUPINFOA info{};
    info.cb = sizeof info;
    info.dwFlags = STARTF_USESTDHANDLES;
    info.hStdInput = nothing.get();
    info.hStdOutput = output.write.get();
    info.hStdError = output.write.get();
    std::string line = command.commandLine;  // the system may write into it
    PROCESS_INFORMATION created{};
    // Suspended until it belongs to the job: there is no moment at which it could outlive this helper.
    if (CreateProcessA(command.file.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                       nullptr, &info, &created) == 0) {
        return std::nullopt;
    }
    const Handle process{created.hProcess};
    const Handle thread{created.hThread};
    AssignProcessToJobObject(job.get(), process.get());
    output.write.close();
    LastWords words;
    std::thread reader{readToEnd, output.read.get(), std::ref(words)};
    ResumeThread(thread.get());

    WaitForSingleObject(process.get(), INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    job.close();  // what the client left behind ends now, and with it the last hold on the pipe
    reader.join();
    return ClientEnd{code, words.line()};
}

}  // namespace zpt
