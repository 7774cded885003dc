#include "user_objects.h"

#include <cstdint>
#include <cstring>
#include <set>
#include <utility>

#include "platform/win32/handle.h"

namespace qxterm::probe {
namespace {

using TimerName = std::pair<HWND, UINT_PTR>;

/// Outlives every caller.
std::set<TimerName>& running() {
    static auto* const timers = new std::set<TimerName>;
    return *timers;
}

/// The program's own calls of a routine of the system lead to `to` from now on. Returns where they led
/// before.
FARPROC redirect(const char* name, FARPROC to) {
    FARPROC before = nullptr;
    auto* const base = reinterpret_cast<char*>(GetModuleHandleA(nullptr));
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& place = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + place.VirtualAddress);
         library->Name != 0; ++library) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* routines = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++routines) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* const one =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(one->Name), name) != 0) continue;
            before = reinterpret_cast<FARPROC>(routines->u1.Function);
            DWORD protection = 0;
            VirtualProtect(routines, sizeof *routines, PAGE_READWRITE, &protection);
            routines->u1.Function = reinterpret_cast<ULONG_PTR>(to);
            VirtualProtect(routines, sizeof *routines, protection, &protection);
        }
    }
    return before;
}

template <class Routine>
Routine* redirected(const char* name, Routine* to) {
    return reinterpret_cast<Routine*>(
        reinterpret_cast<void*>(redirect(name, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(to)))));
}

UINT_PTR WINAPI countedSetTimer(HWND window, UINT_PTR number, UINT period, TIMERPROC routine);
BOOL WINAPI countedKillTimer(HWND window, UINT_PTR number);

const auto trueSetTimer = redirected("SetTimer", countedSetTimer);
const auto trueKillTimer = redirected("KillTimer", countedKillTimer);

UINT_PTR WINAPI countedSetTimer(HWND window, UINT_PTR number, UINT period, TIMERPROC routine) {
    const UINT_PTR made = trueSetTimer(window, number, period, routine);
    // A timer of the thread gets a number from the system.
    if (made != 0) running().emplace(window, window != nullptr ? number : made);
    return made;
}

BOOL WINAPI countedKillTimer(HWND window, UINT_PTR number) {
    running().erase({window, number});
    return trueKillTimer(window, number);
}

}  // namespace

int menusAndIcons() {
    int count = 0;
    // The lower half of a handle is its place in the process's table, and is enough to ask with.
    constexpr std::uintptr_t firstPlace = 0x20;
    constexpr std::uintptr_t lastPlace = 0xFFEF;
    for (std::uintptr_t place = firstPlace; place <= lastPlace; place += 2) {
        if (IsMenu(reinterpret_cast<HMENU>(place)) != 0) {
            ++count;
            continue;
        }
        ICONINFO information{};
        if (GetIconInfo(reinterpret_cast<HICON>(place), &information) == 0) continue;
        ++count;
        const win32::Bitmap mask{information.hbmMask};
        const win32::Bitmap colours{information.hbmColor};
    }
    return count;
}

std::size_t systemTimers() {
    // A window's timers end with it.
    std::erase_if(running(), [](const TimerName& timer) {
        return timer.first != nullptr && IsWindow(timer.first) == 0;
    });
    return running().size();
}

}  // namespace qxterm::probe
