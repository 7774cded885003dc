#pragma once

#include <string>
#include <string_view>

#include "common/win32/handle.h"

/// What the terminal does to start a helper, and a helper to start its client.
namespace zpt {

/// A job that ends everything in it when its last handle, this one, is gone. None when the system refuses.
[[nodiscard]] Handle endingJob();

/// Lets a process that was created suspended run, as one of the job: there is no moment at which it could
/// outlive the job's owner. False when that cannot be; the process has been ended then.
[[nodiscard]] bool runInJob(HANDLE job, HANDLE process, HANDLE thread);

/// What a process is ended with when it is not its own end.
constexpr UINT exitCodeOfTerminated = 1;

/// For handles that a child process inherits.
[[nodiscard]] SECURITY_ATTRIBUTES inheritable();
/// This handle is not, or no longer, for a child process.
void keepFromChildren(const Handle& handle);

/// A pipe whose ends a child process inherits. No ends when the system has none left.
struct Pipe {
    Pipe();
    Handle read;
    Handle write;
};

/// An inherited handle as a text, by which a child process is told of it; and back again. None when the text
/// is not a number.
[[nodiscard]] std::string numberOf(const Handle& handle);
[[nodiscard]] HANDLE handleOfNumber(std::string_view text);

}  // namespace zpt
