#include "platform/process.h"

#include <memory>
#include <utility>
#include <vector>

#include "common/win32/child.h"
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

/// All helpers belong to this job. The program's handle of it is the only one and is never closed: when the
/// program is gone, the system closes it and ends what still runs. Null when the system has none to give; the
/// next start asks again.
HANDLE jobOfHelpers() {
    static HANDLE job = nullptr;
    if (job == nullptr) job = zpt::endingJob().release();
    return job;
}

zpt::Pipe pipe() {
    zpt::Pipe made;
    if (!made.read) throw RunTimeError{errors::outOfMemory};
    return made;
}

/// An event that a child process inherits, not set.
HANDLE inheritableEvent() {
    SECURITY_ATTRIBUTES attributes = zpt::inheritable();
    HANDLE const created = CreateEventA(&attributes, TRUE, FALSE, nullptr);
    if (created == nullptr) throw RunTimeError{errors::outOfMemory};
    return created;
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
        zpt::Pipe toHelper = pipe();
        zpt::Pipe fromHelper = pipe();
        zpt::keepFromChildren(toHelper.write);
        zpt::keepFromChildren(fromHelper.read);
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
        variables.push_back({readyVariable_, zpt::numberOf(started->readiness)});
    }
    const std::string own = program::folder();
    // Without it the name would be looked for where anybody may have put a program.
    if (own.find('\\') == std::string::npos) return false;
    const std::string folder = program::fileIn(own, {});
    const std::string file = folder + name_ + ".exe";
    std::string line{commandLine};  // the system may write into it
    PROCESS_INFORMATION created{};
    const Environment values{std::move(variables)};
    if (jobOfHelpers() == nullptr) return false;
    if (CreateProcessA(file.c_str(), line.data(), nullptr, nullptr, TRUE,
                       NORMAL_PRIORITY_CLASS | CREATE_SUSPENDED, nullptr, folder.c_str(), &info,
                       &created) == 0) {
        return false;
    }
    zpt::keepFromChildren(started->readiness);
    started->process.reset(created.hProcess);
    started->thread.reset(created.hThread);
    if (!zpt::runInJob(jobOfHelpers(), created.hProcess, created.hThread)) return false;
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
    return TerminateProcess(native->process.get(), zpt::exitCodeOfTerminated) != 0 ? 0 : GetLastError();
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
