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

[[noreturn]] void fail() { throw RunTimeError{errorNumber(GetLastError())}; }

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
    const win32::KernelHandle file =
        zpt::validHandle(CreateFileA(traceFile, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) fail();
    const std::string text = std::string{line} + "\r\n";
    DWORD written = 0;
    if (WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) == 0) fail();
}

}  // namespace qxterm::program
