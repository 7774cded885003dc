#include "fault_table.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include "common/win32/system.h"

// After the system's own headers.
#include <iphlpapi.h>
#include <process.h>

namespace qxterm::faults {
namespace {

/// One function of the API.
struct Faulty {
    const char* name;
    std::intptr_t result;  ///< of a call that fails
    DWORD error;           ///< what GetLastError and WSAGetLastError tell then
    void* replacement;
    void* original = nullptr;
    std::atomic<std::uint32_t> after{0};
    std::atomic<std::uint32_t> times{0};
    std::atomic<std::uint32_t> calls{0};
    std::atomic<std::uint32_t> failed{0};
};

Faulty& at(std::size_t place);

/// The probe works in one thread alone. (A variable of each thread would be made by calls that lead here.)
const DWORD ownThread = GetCurrentThreadId();
int ownCalls = 0;

std::string variable(const char* name) {
    std::array<char, 512> text{};
    const DWORD length = GetEnvironmentVariableA(name, text.data(), static_cast<DWORD>(text.size()));
    return length < text.size() ? std::string{text.data(), length} : std::string{};
}

/// Where a program that nobody can ask tells what has failed.
std::string& telling() {
    static std::string file;
    return file;
}

void tell(const char* function) {
    if (telling().empty()) return;
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    // By the C library, whose calls do not lead here.
    const std::unique_ptr<std::FILE, Close> file{std::fopen(telling().c_str(), "a")};
    if (file) std::fprintf(file.get(), "%s\n", function);
}

/// True when this call is to fail.
bool meet(Faulty& one) {
    if (GetCurrentThreadId() == ownThread && ownCalls > 0) return false;
    ++one.calls;
    if (one.times == 0) return false;
    if (one.after > 0) {
        --one.after;
        return false;
    }
    --one.times;
    if (one.failed++ == 0) tell(one.name);
    return true;
}

template <class Result>
Result asResult(std::intptr_t value) {
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(value);
    } else {
        return static_cast<Result>(value);
    }
}

template <std::size_t Place, class Function>
struct Replaced;

template <std::size_t Place, class Result, class... Arguments>
struct Replaced<Place, Result(WINAPI*)(Arguments...)> {
    static Result WINAPI call(Arguments... arguments) {
        Faulty& one = at(Place);
        if (meet(one)) {
            SetLastError(one.error);
            return asResult<Result>(one.result);
        }
        return reinterpret_cast<Result(WINAPI*)(Arguments...)>(one.original)(arguments...);
    }
};

constexpr std::intptr_t none = 0;
constexpr std::intptr_t invalid = -1;

// X(function, result, error): what they give when the system has nothing left, or refuses.
#define FAULTY_FUNCTIONS(X)                                          \
    X(AddFontResourceExA, none, ERROR_FILE_NOT_FOUND)                \
    X(AppendMenuA, none, ERROR_NOT_ENOUGH_MEMORY)                    \
    X(AssignProcessToJobObject, none, ERROR_ACCESS_DENIED)           \
    X(BeginPaint, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(BitBlt, none, ERROR_INVALID_HANDLE)                            \
    X(CreateCompatibleDC, none, ERROR_NOT_ENOUGH_MEMORY)             \
    X(CreateDIBSection, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(CreateDialogParamA, none, ERROR_NOT_ENOUGH_MEMORY)             \
    X(CreateEventA, none, ERROR_NOT_ENOUGH_MEMORY)                   \
    X(CreateFileA, invalid, ERROR_ACCESS_DENIED)                     \
    X(CreateFontA, none, ERROR_NOT_ENOUGH_MEMORY)                    \
    X(CreateJobObjectA, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(CreateMenu, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(CreatePen, none, ERROR_NOT_ENOUGH_MEMORY)                      \
    X(CreatePipe, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(CreatePopupMenu, none, ERROR_NOT_ENOUGH_MEMORY)                \
    X(CreateProcessA, none, ERROR_FILE_NOT_FOUND)                    \
    X(CreateRectRgn, none, ERROR_NOT_ENOUGH_MEMORY)                  \
    X(CreateSolidBrush, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(CreateThread, none, ERROR_NOT_ENOUGH_MEMORY)                   \
    X(CreateWindowExA, none, ERROR_NOT_ENOUGH_MEMORY)                \
    X(DeleteMenu, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(DrawTextA, none, ERROR_INVALID_HANDLE)                         \
    X(EmptyClipboard, none, ERROR_ACCESS_DENIED)                     \
    X(EnableMenuItem, invalid, ERROR_INVALID_HANDLE)                 \
    X(ExtTextOutA, none, ERROR_INVALID_HANDLE)                       \
    X(FillRect, none, ERROR_INVALID_HANDLE)                          \
    X(GetClipBox, none, ERROR_INVALID_HANDLE)                        \
    X(GetClipboardData, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(GetCommState, none, ERROR_INVALID_HANDLE)                      \
    X(GetDC, none, ERROR_NOT_ENOUGH_MEMORY)                          \
    X(GetExtendedTcpTable, ERROR_NOT_SUPPORTED, ERROR_NOT_SUPPORTED) \
    X(GetFileAttributesA, invalid, ERROR_FILE_NOT_FOUND)             \
    X(GetGUIThreadInfo, none, ERROR_INVALID_PARAMETER)               \
    X(GetModuleFileNameA, none, ERROR_NOT_ENOUGH_MEMORY)             \
    X(GetPrivateProfileStringA, none, ERROR_FILE_NOT_FOUND)          \
    X(GetRegionData, none, ERROR_INVALID_HANDLE)                     \
    X(GetSystemDirectoryA, none, ERROR_NOT_ENOUGH_MEMORY)            \
    X(GetTcpTable, ERROR_NOT_SUPPORTED, ERROR_NOT_SUPPORTED)         \
    X(GetTextExtentPoint32A, none, ERROR_INVALID_HANDLE)             \
    X(GetTextMetricsA, none, ERROR_INVALID_HANDLE)                   \
    X(GetUdpTable, ERROR_NOT_SUPPORTED, ERROR_NOT_SUPPORTED)         \
    X(GetUpdateRgn, none, ERROR_INVALID_HANDLE)                      \
    X(GlobalAlloc, none, ERROR_NOT_ENOUGH_MEMORY)                    \
    X(GlobalLock, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(LoadImageA, none, ERROR_NOT_ENOUGH_MEMORY)                     \
    X(LoadLibraryExA, none, ERROR_MOD_NOT_FOUND)                     \
    X(MessageBeep, none, ERROR_ACCESS_DENIED)                        \
    X(MessageBoxA, none, ERROR_NOT_ENOUGH_MEMORY)                    \
    X(OpenClipboard, none, ERROR_ACCESS_DENIED)                      \
    X(PatBlt, none, ERROR_INVALID_HANDLE)                            \
    X(PostMessageA, none, ERROR_NOT_ENOUGH_QUOTA)                    \
    X(QueueUserWorkItem, none, ERROR_NOT_ENOUGH_MEMORY)              \
    X(ReadFile, none, ERROR_INVALID_HANDLE)                          \
    X(RegisterClassA, none, ERROR_NOT_ENOUGH_MEMORY)                 \
    X(RegisterClassExA, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(ResumeThread, invalid, ERROR_ACCESS_DENIED)                    \
    X(ScrollDC, none, ERROR_INVALID_HANDLE)                          \
    X(SelectObject, none, ERROR_INVALID_HANDLE)                      \
    X(SetClipboardData, none, ERROR_NOT_ENOUGH_MEMORY)               \
    X(SetCommState, none, ERROR_INVALID_PARAMETER)                   \
    X(SetHandleInformation, none, ERROR_INVALID_HANDLE)              \
    X(SetInformationJobObject, none, ERROR_ACCESS_DENIED)            \
    X(SetTimer, none, ERROR_NOT_ENOUGH_MEMORY)                       \
    X(SetWindowTextA, none, ERROR_NOT_ENOUGH_MEMORY)                 \
    X(TerminateJobObject, none, ERROR_ACCESS_DENIED)                 \
    X(TerminateProcess, none, ERROR_ACCESS_DENIED)                   \
    X(WSAAsyncSelect, invalid, WSAENOBUFS)                           \
    X(WSAStartup, WSASYSNOTREADY, WSASYSNOTREADY)                    \
    X(WaitCommEvent, none, ERROR_INVALID_HANDLE)                     \
    X(WriteFile, none, ERROR_DISK_FULL)                              \
    X(WritePrivateProfileStringA, none, ERROR_ACCESS_DENIED)         \
    X(_beginthreadex, none, ERROR_NOT_ENOUGH_MEMORY)                 \
    X(accept, invalid, WSAENOBUFS)                                   \
    X(bind, invalid, WSAEADDRINUSE)                                  \
    X(connect, invalid, WSAENETUNREACH)                              \
    X(getaddrinfo, WSAHOST_NOT_FOUND, WSAHOST_NOT_FOUND)             \
    X(getsockname, invalid, WSAENOBUFS)                              \
    X(ioctlsocket, invalid, WSAENOBUFS)                              \
    X(listen, invalid, WSAENOBUFS)                                   \
    X(recv, invalid, WSAECONNRESET)                                  \
    X(select, invalid, WSAENOBUFS)                                   \
    X(send, invalid, WSAECONNRESET)                                  \
    X(setsockopt, invalid, WSAENOBUFS)                               \
    X(shutdown, invalid, WSAENOTCONN)                                \
    X(socket, invalid, WSAEMFILE)

enum class Place : std::size_t {
#define PLACE(function, result, error) function##Place,
    FAULTY_FUNCTIONS(PLACE)
#undef PLACE
        count,
};

std::array<Faulty, static_cast<std::size_t>(Place::count)> functions{{
#define ENTRY(function, result, error)                                         \
    {#function, static_cast<std::intptr_t>(result), static_cast<DWORD>(error), \
     reinterpret_cast<void*>(                                                  \
         &Replaced<static_cast<std::size_t>(Place::function##Place), decltype(&::function)>::call)},
    FAULTY_FUNCTIONS(ENTRY)
#undef ENTRY
}};

Faulty& at(std::size_t place) { return functions[place]; }

Faulty* named(const char* name) {
    for (Faulty& one : functions) {
        if (std::strcmp(one.name, name) == 0) return &one;
    }
    return nullptr;
}

template <class T>
T* inModule(std::uint8_t* base, DWORD place) {
    return reinterpret_cast<T*>(base + place);
}

void replace(IMAGE_THUNK_DATA& entry, Faulty& one) {
    DWORD before = 0;
    VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &before);
    one.original = reinterpret_cast<void*>(entry.u1.Function);
    entry.u1.Function = reinterpret_cast<ULONG_PTR>(one.replacement);
    VirtualProtect(&entry, sizeof entry, before, &before);
}

/// Puts the replacements into the program's import table.
bool replaceAll() {
    auto* const base = reinterpret_cast<std::uint8_t*>(GetModuleHandleA(nullptr));
    const auto* const dos = inModule<IMAGE_DOS_HEADER>(base, 0);
    const auto* const header = inModule<IMAGE_NT_HEADERS>(base, static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& imports = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* library = inModule<IMAGE_IMPORT_DESCRIPTOR>(base, imports.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* name = inModule<IMAGE_THUNK_DATA>(base, library->OriginalFirstThunk);
        auto* entry = inModule<IMAGE_THUNK_DATA>(base, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto* const by =
                inModule<IMAGE_IMPORT_BY_NAME>(base, static_cast<DWORD>(name->u1.AddressOfData));
            Faulty* const one = named(reinterpret_cast<const char*>(by->Name));
            if (one != nullptr && one->original == nullptr) replace(*entry, *one);
        }
    }
    return true;
}

/// What is to fail from the start: "FUNCTION AFTER TIMES".
bool planFromEnvironment() {
    telling() = variable("QXTERM_FAULTS_TOLD");
    const std::string line = variable("QXTERM_FAULT");
    if (line.empty()) return false;
    const std::size_t first = line.find(' ');
    const std::size_t second = line.find(' ', first + 1);
    plan(line.substr(0, first), static_cast<std::uint32_t>(std::stoul(line.substr(first))),
         static_cast<std::uint32_t>(std::stoul(line.substr(second))));
    return true;
}

[[maybe_unused]] const bool replaced = replaceAll();
[[maybe_unused]] const bool planned = planFromEnvironment();

}  // namespace

void plan(const std::string& name, std::uint32_t after, std::uint32_t times) {
    Faulty* const one = named(name.c_str());
    if (one == nullptr || one->original == nullptr)
        throw std::invalid_argument{"the program does not call " + name};
    one->after = after;
    one->times = times;
}

void forgetPlans() {
    for (Faulty& one : functions) {
        one.times = 0;
        one.calls = 0;
        one.failed = 0;
    }
}

std::vector<Counts> counted() {
    std::vector<Counts> all;
    for (const Faulty& one : functions) {
        if (one.calls > 0) all.push_back({one.name, one.calls, one.failed});
    }
    return all;
}

OwnCalls::OwnCalls() { ++ownCalls; }
OwnCalls::~OwnCalls() { --ownCalls; }

}  // namespace qxterm::faults
