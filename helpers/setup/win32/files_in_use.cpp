#include "setup/win32/files_in_use.h"

#include <set>
#include <utility>
#include <vector>

#include "common/win32/handle.h"
#include "common/win32/system.h"

namespace setup {
namespace {

/// More sessions than this do not outlive as many upgrades between two starts of Windows.
constexpr unsigned mostNames = 1000;

bool exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

bool inUse(const std::wstring& path) {
    const zpt::Handle file = zpt::validHandle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                                          0, nullptr, OPEN_EXISTING, 0, nullptr));
    return !file;
}

/// The name that the file was given, or an empty text.
std::wstring setOneAside(const std::wstring& path) {
    for (unsigned number = 1; number < mostNames; ++number) {
        std::wstring aside = asideName(path, number);
        if (exists(aside)) continue;
        return MoveFileExW(path.c_str(), aside.c_str(), 0) ? aside : std::wstring{};
    }
    return {};
}

/// The folder itself and those that its files lie in.
std::set<std::wstring> foldersOf(const FileList& list) {
    std::set<std::wstring> folders;
    if (list.folder.empty()) return folders;
    folders.insert(list.folder);
    for (const std::wstring& file : list.files) {
        const std::size_t slash = file.rfind(L'\\');
        if (slash != std::wstring::npos) folders.insert(list.folder + file.substr(0, slash + 1));
    }
    return folders;
}

/// Deletes the folder's files that were set aside; returns whether some have to wait.
bool clearFolder(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = folder + L"*" + std::wstring{asideMark} + L"*";
    HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return false;
    std::vector<std::wstring> names;
    do {
        if (!nameBeforeAside(found.cFileName).empty()) names.emplace_back(found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);

    bool waiting = false;
    for (const std::wstring& name : names) {
        const std::wstring path = folder + name;
        if (DeleteFileW(path.c_str())) continue;
        MoveFileExW(path.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
        waiting = true;
    }
    return waiting;
}

}  // namespace

std::wstring stuckFile(const FileList& list) {
    for (const std::wstring& file : list.files) {
        std::wstring path = list.folder + file;
        if (!exists(path)) continue;
        const zpt::Handle renaming = zpt::validHandle(
            CreateFileW(path.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, 0, nullptr));
        if (!renaming && GetLastError() == ERROR_SHARING_VIOLATION) return path;
    }
    return {};
}

std::wstring setAside(const FileList& list) {
    std::vector<std::pair<std::wstring, std::wstring>> moved;
    for (const std::wstring& file : list.files) {
        std::wstring path = list.folder + file;
        if (!exists(path) || !inUse(path)) continue;
        std::wstring aside = setOneAside(path);
        if (aside.empty()) {
            for (const auto& [before, now] : moved) MoveFileExW(now.c_str(), before.c_str(), 0);
            return path;
        }
        moved.emplace_back(path, std::move(aside));
    }
    return {};
}

void putBack(const FileList& list) {
    for (const std::wstring& file : list.files) {
        const std::wstring path = list.folder + file;
        // The highest number is the latest: those below are older versions that some session still uses.
        for (unsigned number = mostNames; number-- > 1 && !exists(path);) {
            const std::wstring aside = asideName(path, number);
            if (exists(aside)) MoveFileExW(aside.c_str(), path.c_str(), 0);
        }
    }
}

void clearAside(const FileList& list) {
    bool waiting = false;
    const std::set<std::wstring> folders = foldersOf(list);
    for (const std::wstring& folder : folders) waiting = clearFolder(folder) || waiting;
    if (!waiting) return;
    // Innermost first. One that has files in it by then is left alone by the system.
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        MoveFileExW(folder->c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
    }
}

}  // namespace setup
