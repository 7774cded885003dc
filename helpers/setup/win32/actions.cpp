// What the installer does beyond its tables: files in use are set aside, so that an upgrade replaces all
// files or none, also while the program runs; profiles are brought along. It is a library inside the package,
// and is never installed.

#include <optional>
#include <string>

#include "common/win32/system.h"
#include "setup/ini_text.h"
#include "setup/win32/files_in_use.h"
#include "setup/win32/registry.h"
#include "setup/win32/small_file.h"

// Behind the system's others.
#include <msi.h>
#include <msiquery.h>

namespace {

constexpr const char* productKey = R"(SOFTWARE\qxterm)";
/// The file of profiles as the installer wrote it, to know it again.
constexpr const char* broughtValue = "BroughtProfiles";

std::wstring property(MSIHANDLE install, const wchar_t* name) {
    DWORD length = 0;
    wchar_t none[1] = {};
    if (MsiGetPropertyW(install, name, none, &length) != ERROR_MORE_DATA) return {};
    std::wstring value(++length, L'\0');
    if (MsiGetPropertyW(install, name, value.data(), &length) != ERROR_SUCCESS) return {};
    value.resize(length);
    return value;
}

/// Says in the installer's own way why it ends, in its window and its log.
UINT refuse(MSIHANDLE install, const std::wstring& why) {
    const MSIHANDLE record = MsiCreateRecord(1);
    MsiRecordSetStringW(record, 0, L"[1]");
    MsiRecordSetStringW(record, 1, why.c_str());
    MsiProcessMessage(install, INSTALLMESSAGE_ERROR, record);
    MsiCloseHandle(record);
    return ERROR_INSTALL_FAILURE;
}

setup::FileList givenFiles(MSIHANDLE install) {
    return setup::readFileList(property(install, L"CustomActionData"));
}

UINT unlessStuck(MSIHANDLE install, const std::wstring& file) {
    if (file.empty()) return ERROR_SUCCESS;
    return refuse(install,
                  file +
                      L" is in use, and cannot be replaced meanwhile. Nothing has been changed. Close "
                      L"the program that uses it, and start the installer again.");
}

std::wstring wide(const std::string& text) {
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(), length);
    return result;
}

std::string narrow(const std::wstring& text) {
    const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                           nullptr, nullptr);
    std::string result(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(), length, nullptr,
                        nullptr);
    return result;
}

bool fullPath(const std::wstring& path) {
    return path.size() > 2 && (path[1] == L':' || (path[0] == L'\\' && path[1] == L'\\'));
}

}  // namespace

extern "C" {

__declspec(dllexport) UINT __stdcall RefuseOlder(MSIHANDLE install) {
    return refuse(install, L"A newer version is installed already. Remove it first if you want version " +
                               property(install, L"ProductVersion") + L".");
}

/// Before anything has been changed.
__declspec(dllexport) UINT __stdcall CheckFilesInUse(MSIHANDLE install) {
    return unlessStuck(install, setup::stuckFile(setup::readFileList(property(install, L"FilesToCheck"))));
}

__declspec(dllexport) UINT __stdcall SetAside(MSIHANDLE install) {
    return unlessStuck(install, setup::setAside(givenFiles(install)));
}

__declspec(dllexport) UINT __stdcall PutBack(MSIHANDLE install) {
    setup::putBack(givenFiles(install));
    return ERROR_SUCCESS;
}

__declspec(dllexport) UINT __stdcall ClearAside(MSIHANDLE install) {
    setup::clearAside(givenFiles(install));
    return ERROR_SUCCESS;
}

/// Runs as the person who installs, who can read what the system's own account perhaps cannot: the text
/// itself goes to the action that writes it.
__declspec(dllexport) UINT __stdcall ReadProfiles(MSIHANDLE install) {
    const std::wstring path = property(install, L"PROFILES");
    if (!fullPath(path)) {
        return refuse(install,
                      L"PROFILES names \"" + path + L"\". Give the full path of the file, with its drive.");
    }
    const std::optional<std::string> text = setup::readSmallFile(path);
    if (!text) return refuse(install, L"The file of profiles cannot be read: " + path);
    if (!setup::namesProfiles(*text)) {
        return refuse(install,
                      L"No profiles are named in " + path +
                          L". It needs a section [Settings] with a line Profiles=, and a section for each "
                          L"profile, like qxterm.ini.");
    }
    MsiSetPropertyW(install, L"BringProfiles", wide(*text).c_str());
    return ERROR_SUCCESS;
}

__declspec(dllexport) UINT __stdcall BringProfiles(MSIHANDLE install) {
    const std::string brought = narrow(property(install, L"CustomActionData"));
    const std::wstring path = setup::settingsFile();
    const std::optional<std::string> present = setup::readSmallFile(path);
    const bool ours =
        !present || setup::registryBytes(HKEY_LOCAL_MACHINE, productKey, broughtValue) == present;
    const std::string text = setup::mergedProfiles(ours ? std::string{} : *present, brought);
    if (!setup::replaceFile(path, text)) return refuse(install, L"The profiles cannot be written to " + path);
    if (ours) {
        RegSetKeyValueA(HKEY_LOCAL_MACHINE, productKey, broughtValue, REG_BINARY, text.data(),
                        static_cast<DWORD>(text.size()));
    } else {
        RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, productKey, broughtValue);
    }
    return ERROR_SUCCESS;
}

/// What was brought goes again, unless somebody has changed it.
__declspec(dllexport) UINT __stdcall RemoveProfiles(MSIHANDLE) {
    const std::wstring path = setup::settingsFile();
    const std::optional<std::string> brought =
        setup::registryBytes(HKEY_LOCAL_MACHINE, productKey, broughtValue);
    if (brought && setup::readSmallFile(path) == brought) DeleteFileW(path.c_str());
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, productKey, broughtValue);
    return ERROR_SUCCESS;
}

/// Windows keeps the mapping in memory, and reads it anew when it is asked in this way.
__declspec(dllexport) UINT __stdcall RefreshMapping(MSIHANDLE) {
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, L"qxterm.ini");
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, nullptr);
    return ERROR_SUCCESS;
}
}
