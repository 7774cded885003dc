#include "platform/process.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "platform/program.h"
#include "platform/run_time_error.h"
#include "platform/win32/handle.h"

namespace qxterm {

struct HelperProcess::Native {
    win32::KernelHandle process;
    win32::KernelHandle thread;
    /// The program's ends of the pipes. Nobody reads or writes them: open, they keep the helper's ends whole.
    win32::KernelHandle toHelper;
    win32::KernelHandle fromHelper;
    /// Set by the helper when it is ready.
    win32::KernelHandle readiness;
};

namespace win32 {
namespace {

constexpr UINT exitCodeOfTerminated = 1;

/// All helpers belong to this job. The program's handle of it is the only one and is never closed: when the
/// program is gone, the system closes it and ends what still runs. Null when the system has none to give.
HANDLE jobOfHelpers() {
    static HANDLE const job = [] {
        HANDLE const created = CreateJobObjectA(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        if (created == nullptr || SetInformationJobObject(created, JobObjectExtendedLimitInformation, &limits,
                                                          sizeof limits) != 0) {
            return created;
        }
        CloseHandle(created);
        return HANDLE{};
    }();
    return job;
}

/// Lets a process that was created suspended run, as one of the job. False when that cannot be; the process
/// has been ended then.
bool runInJob(HANDLE process, HANDLE thread) {
    constexpr DWORD failed = static_cast<DWORD>(-1);
    if (AssignProcessToJobObject(jobOfHelpers(), process) != 0 && ResumeThread(thread) != failed) return true;
    TerminateProcess(process, exitCodeOfTerminated);
    return false;
}

/// A pipe whose ends a child process inherits.
struct Pipe {
    Pipe() {
        SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        if (CreatePipe(&readEnd, &writeEnd, &inheritable, 0) == 0) throw RunTimeError{errors::outOfMemory};
        read.reset(readEnd);
        write.reset(writeEnd);
    }

    KernelHandle read;
    KernelHandle write;
};

/// What stays with the program is not for a child started later.
void keep(const KernelHandle& handle) { SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, 0); }

/// An event that a child process inherits, not set.
HANDLE inheritableEvent() {
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE const created = CreateEventA(&inheritable, TRUE, FALSE, nullptr);
    if (created == nullptr) throw RunTimeError{errors::outOfMemory};
    return created;
}

/// How a child process reads the handle that it inherits.
std::string numberOf(const KernelHandle& handle) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(handle.get()));
}

/// Puts values into the program's environment for as long as it takes to start a child.
class Environment {
public:
    explicit Environment(std::vector<EnvironmentValue> values) : values_{std::move(values)} {
        for (const EnvironmentValue& one : values_) SetEnvironmentVariableA(one.name, one.value.c_str());
    }
    ~Environment() {
        for (const EnvironmentValue& one : values_) SetEnvironmentVariableA(one.name, nullptr);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    std::vector<EnvironmentValue> values_;
};

std::string folderWithBackslash() {
    std::string folder = program::folder();
    if (!folder.ends_with('\\')) folder += '\\';
    return folder;
}

STARTUPINFOA hiddenWindow() {
    STARTUPINFOA info{};
    info.cb = sizeof info;
    info.dwFlags = STARTF_USESHOWWINDOW;
    info.wShowWindow = SW_HIDE;
    return info;
}

}  // namespace
}  // namespace win32

bool HelperProcess::start(std::string_view commandLine, StandardHandles handles,
                          std::span<const EnvironmentValue> environment) {
    using namespace win32;
    auto started = std::make_unique<Native>();
    STARTUPINFOA info = hiddenWindow();
    KernelHandle helperInput;
    KernelHandle helperOutput;
    if (handles == StandardHandles::pipes) {
        Pipe toHelper;
        Pipe fromHelper;
        keep(toHelper.write);
        keep(fromHelper.read);
        helperInput = std::move(toHelper.read);
        helperOutput = std::move(fromHelper.write);
        started->toHelper = std::move(toHelper.write);
        started->fromHelper = std::move(fromHelper.read);
        info.dwFlags |= STARTF_USESTDHANDLES;
        info.hStdInput = helperInput.get();
        info.hStdOutput = helperOutput.get();
        info.hStdError = helperOutput.get();
    }
    std::vector<EnvironmentValue> variables{environment.begin(), environment.end()};
    if (readyVariable_ != nullptr) {
        started->readiness.reset(inheritableEvent());
        variables.push_back({readyVariable_, numberOf(started->readiness)});
    }
    const std::string folder = folderWithBackslash();
    const std::string file = folder + name_ + ".exe";
    std::string line{commandLine};  // the system may write into it
    PROCESS_INFORMATION created{};
    const Environment values{std::move(variables)};
    if (jobOfHelpers() == nullptr) return false;
    // Suspended until it belongs to the job: there is no moment at which it could outlive the program.
    if (CreateProcessA(file.c_str(), line.data(), nullptr, nullptr, TRUE,
                       NORMAL_PRIORITY_CLASS | CREATE_SUSPENDED, nullptr, folder.c_str(), &info,
                       &created) == 0) {
        return false;
    }
    keep(started->readiness);
    started->process.reset(created.hProcess);
    started->thread.reset(created.hThread);
    if (!runInJob(created.hProcess, created.hThread)) return false;
    native = started.release();
    return true;
}

bool HelperProcess::ended() const {
    return native == nullptr || WaitForSingleObject(native->process.get(), 0) == WAIT_OBJECT_0;
}

bool HelperProcess::ready() const {
    return native != nullptr && native->readiness &&
           WaitForSingleObject(native->readiness.get(), 0) == WAIT_OBJECT_0;
}

void HelperProcess::waitRunningEvents(std::int32_t milliseconds) {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
    while (!ended() && !eventLoop::ending()) {
        const ULONGLONG now = GetTickCount64();
        if (now >= end) return;
        HANDLE const process = native->process.get();
        MsgWaitForMultipleObjectsEx(1, &process, static_cast<DWORD>(end - now), QS_ALLINPUT,
                                    MWMO_INPUTAVAILABLE);
        eventLoop::doEvents();  // at most once a tick of the clock
        Sleep(1);
    }
}

std::uint32_t HelperProcess::terminate() {
    if (native == nullptr) return ERROR_INVALID_HANDLE;
    return TerminateProcess(native->process.get(), win32::exitCodeOfTerminated) != 0 ? 0 : GetLastError();
}

bool HelperProcess::wait(std::int32_t milliseconds) {
    return native == nullptr ||
           WaitForSingleObject(native->process.get(), static_cast<DWORD>(milliseconds)) == WAIT_OBJECT_0;
}

std::uint32_t HelperProcess::exitCode() const {
    DWORD code = 0;
    if (native != nullptr) GetExitCodeProcess(native->process.get(), &code);
    return code;
}

void HelperProcess::close() {
    delete native;
    native = nullptr;
}

}  // namespace qxterm
