#include "platform/help.h"

#include "platform/message_box.h"
#include "platform/win32/files.h"
#include "platform/win32/native.h"

namespace qxterm::help {
namespace {

using HtmlHelp = HWND(WINAPI*)(HWND owner, const char* file, UINT command, DWORD_PTR data);

/// From the system's folder alone; loaded when it is first needed, for it starts threads of its own.
HtmlHelp htmlHelp() {
    static HtmlHelp found = nullptr;
    if (found == nullptr) {
        HMODULE const library = LoadLibraryExA("hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        FARPROC const routine = library != nullptr ? GetProcAddress(library, "HtmlHelpA") : nullptr;
        found = reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(routine));
    }
    return found;
}

bool everShown = false;

void tell(const std::string& text) { messageBox(text, programTitle, Buttons::ok, Icon::information); }

/// Windows marks what a browser or a mail program has brought, and HTML Help then shows empty pages.
void tellOfMark(const std::string& file) {
    static bool told = false;
    if (told || !win32::fileExists(file + ":Zone.Identifier")) return;
    told = true;
    tell(
        "The help file comes from another computer, and Windows may show its pages empty. \"Unblock\" in the "
        "file's properties allows them:\r\n" +
        file);
}

}  // namespace

void show(const std::string& file, std::int32_t command, std::int32_t context) {
    if (command == closeAll) {
        if (everShown) htmlHelp()(nullptr, nullptr, static_cast<UINT>(command), 0);
        return;
    }
    if (!win32::fileExists(file)) {
        tell(missingFile(file));
        return;
    }
    if (!win32::canBeRead(file)) {
        tell("The help file cannot be read:\r\n" + file);
        return;
    }
    if (htmlHelp() == nullptr) {
        tell("HTML Help is not installed on this computer. The help is in the file\r\n" + file);
        return;
    }
    tellOfMark(file);
    everShown = true;
    htmlHelp()(win32::mainWindow(), file.c_str(), static_cast<UINT>(command),
               static_cast<DWORD_PTR>(context));
}

}  // namespace qxterm::help
