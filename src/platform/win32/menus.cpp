#include "platform/win32/menus.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/backend.h"
#include "platform/menu.h"

namespace qxterm {
namespace win32 {
namespace {

// A command's number is made of the menu's place on the bar and the entry's place in the menu.
constexpr int firstCommand = 0x1000;
constexpr int commandsPerMenu = 0x100;

/// What stands in a menu's native half.
struct Shown {
    int command;
    std::string caption;
    friend bool operator==(const Shown&, const Shown&) = default;
};

struct NativeMenu {
    Menu* menu;
    HMENU popup;
    std::vector<Shown> shown;
};

std::vector<NativeMenu>& nativeMenus() {
    static std::vector<NativeMenu> all;
    return all;
}

NativeMenu* find(const Menu& menu) {
    auto& all = nativeMenus();
    const auto at =
        std::find_if(all.begin(), all.end(), [&](const NativeMenu& one) { return one.menu == &menu; });
    return at == all.end() ? nullptr : &*at;
}

int commandOf(const Menu& menu, std::size_t entry) {
    const auto& all = Menu::all();
    const auto place = static_cast<int>(std::find(all.begin(), all.end(), &menu) - all.begin());
    return firstCommand + place * commandsPerMenu + static_cast<int>(entry);
}

/// Two separators with nothing visible between them are shown as one.
std::vector<Shown> visibleEntries(const Menu& menu) {
    std::vector<Shown> result;
    bool afterSeparator = false;
    for (std::size_t n = 0; n < menu.entries().size(); ++n) {
        const Menu::Entry& entry = menu.entries()[n];
        if (!entry.visible || (afterSeparator && entry.separator())) continue;
        result.push_back({commandOf(menu, n), entry.caption});
        afterSeparator = entry.separator();
    }
    return result;
}

void rebuild(NativeMenu& native, std::vector<Shown> entries) {
    bool whole = true;
    for (int left = GetMenuItemCount(native.popup); left > 0; --left)
        whole &= DeleteMenu(native.popup, static_cast<UINT>(left - 1), MF_BYPOSITION) != 0;
    for (const Shown& entry : entries) {
        const bool separator = entry.caption == "-";
        whole &= AppendMenuA(native.popup, separator ? MF_SEPARATOR : MF_STRING,
                             static_cast<UINT_PTR>(entry.command),
                             separator ? nullptr : entry.caption.c_str()) != 0;
    }
    // What is missing is put in, and what is too much goes, when the menu is opened.
    native.shown = whole ? std::move(entries) : std::vector<Shown>{};
}

void synchronise(NativeMenu& native) {
    std::vector<Shown> entries = visibleEntries(*native.menu);
    if (entries != native.shown) rebuild(native, std::move(entries));
    for (std::size_t n = 0; n < native.menu->entries().size(); ++n) {
        const Menu::Entry& entry = native.menu->entries()[n];
        if (!entry.visible || entry.separator()) continue;
        EnableMenuItem(native.popup, static_cast<UINT>(commandOf(*native.menu, n)),
                       MF_BYCOMMAND | (entry.enabled ? MF_ENABLED : MF_GRAYED));
    }
}

}  // namespace

HMENU createMenuBar(const Form& form) {
    std::erase_if(nativeMenus(), [&](const NativeMenu& one) { return &one.menu->form() == &form; });
    HMENU bar = nullptr;
    for (Menu* menu : Menu::all()) {
        if (&menu->form() != &form) continue;
        if (bar == nullptr) bar = CreateMenu();
        NativeMenu native{menu, CreatePopupMenu(), {}};
        const bool made = bar != nullptr && native.popup != nullptr &&
                          AppendMenuA(bar, MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(native.popup),
                                      menu->caption()) != 0;
        if (!made) {
            if (native.popup != nullptr) DestroyMenu(native.popup);
            if (bar != nullptr) DestroyMenu(bar);
            return nullptr;
        }
        synchronise(native);
        nativeMenus().push_back(std::move(native));
    }
    return bar;
}

void chooseMenuEntry(const Form& form, int command) {
    const int place = command - firstCommand;
    if (place < 0) return;
    const auto menuPlace = static_cast<std::size_t>(place / commandsPerMenu);
    const auto entryPlace = static_cast<std::size_t>(place % commandsPerMenu);
    if (menuPlace >= Menu::all().size()) return;
    const Menu& menu = *Menu::all()[menuPlace];
    if (&menu.form() != &form || entryPlace >= menu.entries().size()) return;
    const Menu::Entry& entry = menu.entries()[entryPlace];
    if (!entry.enabled || !entry.visible || entry.separator()) return;
    menu.onClick.raise(entry.index);
}

void openMenu(const Form& form, HMENU popup) {
    for (NativeMenu& one : nativeMenus()) {
        if (one.popup != popup || &one.menu->form() != &form) continue;
        one.menu->onOpen.raise();
        synchronise(one);
        return;
    }
}

}  // namespace win32

void backend::menuChanged(Menu& menu) {
    win32::NativeMenu* const native = win32::find(menu);
    if (native != nullptr) win32::synchronise(*native);
}

}  // namespace qxterm
