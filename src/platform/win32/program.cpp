#include "platform/program.h"

#include <string>

#include "platform/run_time_error.h"
#include "platform/win32/event_loop.h"
#include "platform/win32/handle.h"

namespace qxterm::program {
namespace {

constexpr const char* traceFile = "output.txt";
constexpr const char* blanks = " \t";

std::string programFile() {
    constexpr std::size_t longestPath = 32768;
    std::string path(MAX_PATH, '\0');
    for (;;) {
        const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size() || path.size() >= longestPath) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::int16_t errorNumber(DWORD systemError) {
    switch (systemError) {
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT: return errors::permissionDenied;
        case ERROR_PATH_NOT_FOUND: return errors::pathNotFound;
        default: return errors::pathFileAccess;
    }
}

[[noreturn]] void fail(DWORD systemError) { throw RunTimeError{errorNumber(systemError)}; }

win32::KernelHandle openTrace(DWORD access, DWORD how) {
    return zpt::validHandle(CreateFileA(traceFile, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, how,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Takes the beginning of a line away again: the next one is not to stand behind it.
void cutTrace(DWORD count) {
    if (count == 0) return;
    const win32::KernelHandle file = openTrace(GENERIC_WRITE, OPEN_EXISTING);
    LARGE_INTEGER back{};
    back.QuadPart = -static_cast<LONGLONG>(count);
    if (file && SetFilePointerEx(file.get(), back, nullptr, FILE_END) != 0) SetEndOfFile(file.get());
}

}  // namespace

std::string folder() {
    std::string path = programFile();
    const std::size_t slash = path.find_last_of('\\');
    if (slash == std::string::npos) return path;
    const bool root = slash > 0 && path[slash - 1] == ':';
    path.resize(root ? slash + 1 : slash);
    return path;
}

std::string commandLine() {
    const std::string line = GetCommandLineA();
    // The name ends at the second quotation mark, or at the first blank.
    std::size_t end = !line.empty() && line.front() == '"' ? line.find('"', 1) : line.find_first_of(blanks);
    if (end == std::string::npos) return {};
    const std::size_t first = line.find_first_not_of(blanks, end + 1);
    if (first == std::string::npos) return {};
    return line.substr(first);
}

void end() { win32::endLoop(); }

void appendTrace(std::string_view line) {
    const std::string text = std::string{line} + "\r\n";
    DWORD written = 0;
    DWORD reason = ERROR_DISK_FULL;  // unless the system knows better
    {
        const win32::KernelHandle file = openTrace(FILE_APPEND_DATA, OPEN_ALWAYS);
        if (!file) fail(GetLastError());
        const auto size = static_cast<DWORD>(text.size());
        if (WriteFile(file.get(), text.data(), size, &written, nullptr) == 0) reason = GetLastError();
    }
    if (written == text.size()) return;
    cutTrace(written);
    fail(reason);
}

}  // namespace qxterm::program
