#include "common/win32/child.h"

#include <charconv>
#include <cstdint>

namespace zpt {

Handle endingJob() {
    Handle job{CreateJobObjectA(nullptr, nullptr)};
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    const bool ending = job && SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                                                       sizeof limits) != 0;
    return ending ? std::move(job) : Handle{};
}

bool runInJob(HANDLE job, HANDLE process, HANDLE thread) {
    constexpr auto failed = static_cast<DWORD>(-1);
    if (AssignProcessToJobObject(job, process) != 0 && ResumeThread(thread) != failed) return true;
    TerminateProcess(process, exitCodeOfTerminated);
    return false;
}

SECURITY_ATTRIBUTES inheritable() { return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE}; }

void keepFromChildren(const Handle& handle) { SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, 0); }

Pipe::Pipe() {
    SECURITY_ATTRIBUTES attributes = inheritable();
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (CreatePipe(&readEnd, &writeEnd, &attributes, 0) == 0) return;
    read.reset(readEnd);
    write.reset(writeEnd);
}

std::string numberOf(const Handle& handle) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(handle.get()));
}

HANDLE handleOfNumber(std::string_view text) {
    std::uintptr_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? reinterpret_cast<HANDLE>(number) : nullptr;
}

}  // namespace zpt
