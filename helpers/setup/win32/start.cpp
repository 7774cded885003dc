// What the start menu starts. A user who has no profiles gets those that the machine has; then the program
// follows.

#include <array>
#include <optional>
#include <string>

#include "common/win32/console.h"
#include "common/win32/handle.h"
#include "common/win32/system.h"
#include "setup/ini_text.h"
#include "setup/win32/registry.h"
#include "setup/win32/small_file.h"

namespace {

constexpr const wchar_t* title = L"Zentora Terminal Emulator";

/// A value that the user has already stays.
void give(const std::string& key, const std::string& name, const std::string& value) {
    if (setup::registryText(HKEY_CURRENT_USER, key.c_str(), name.c_str())) return;
    RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), name.c_str(), REG_SZ, value.c_str(),
                    static_cast<DWORD>(value.size() + 1));
}

void giveProfiles() {
    const std::string key = setup::userSettingsKey();
    if (key.empty()) return;
    // The program writes other settings at its first start; the list of profiles only when one is saved.
    if (setup::registryText(HKEY_CURRENT_USER, (key + "\\Settings").c_str(), "Profiles")) return;
    const std::optional<std::string> text = setup::readSmallFile(setup::settingsFile());
    if (!text || !setup::namesProfiles(*text)) return;
    // The list comes last: whoever is interrupted begins anew.
    for (const bool list : {false, true}) {
        for (const setup::IniSection& section : setup::readIni(*text)) {
            for (const auto& [name, value] : section.values) {
                const bool isList = lstrcmpiA(section.name.c_str(), "Settings") == 0 &&
                                    lstrcmpiA(name.c_str(), "Profiles") == 0;
                if (isList == list) give(key + "\\" + section.name, name, value);
            }
        }
    }
}

std::wstring ownFolder() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    const std::wstring own{path.data(), length};
    return own.substr(0, own.rfind(L'\\'));
}

/// The folder that the program starts in, where it writes its trace: the current one, but for those of the
/// program and of the system the user's own, since nobody may write there.
std::wstring startFolder(const std::wstring& own) {
    std::array<wchar_t, 32768> buffer{};
    const auto size = static_cast<DWORD>(buffer.size());
    DWORD length = GetCurrentDirectoryW(size, buffer.data());
    std::wstring current{buffer.data(), length};
    // The installer's entry names the folder with a backslash behind it.
    if (!current.empty() && current.back() == L'\\') current.pop_back();
    length = GetSystemDirectoryW(buffer.data(), size);
    const std::wstring system{buffer.data(), length};
    if (lstrcmpiW(current.c_str(), own.c_str()) != 0 && lstrcmpiW(current.c_str(), system.c_str()) != 0) {
        return current;
    }
    length = GetEnvironmentVariableW(L"USERPROFILE", buffer.data(), size);
    return length != 0 && length < size ? std::wstring{buffer.data(), length} : current;
}

/// Before all other code: what watches the stack calls the system, too.
[[gnu::constructor(101)]] void hardenFirst() { zpt::hardenProcess(); }

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* lpCmdLine, int nShowCmd) {
    giveProfiles();
    const std::wstring own = ownFolder();
    const std::wstring program = own + L"\\qxterm.exe";
    const std::wstring folder = startFolder(own);
    std::wstring commandLine = L"\"" + program + L"\"";
    if (*lpCmdLine != L'\0') commandLine.append(L" ").append(lpCmdLine);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = static_cast<WORD>(nShowCmd);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.c_str(), &start, &process)) {
        const std::wstring text = program + L" cannot be started. Repair the installation.";
        MessageBoxW(nullptr, text.c_str(), title, MB_ICONERROR | MB_OK);
        return 1;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return 0;
}
