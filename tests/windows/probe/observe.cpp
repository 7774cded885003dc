#include "observe.h"

#include <algorithm>
#include <array>
#include <string>

#include "program_forms.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"
#include "user_objects.h"

// After the system's own headers.
#include <psapi.h>

namespace qxterm::probe {
namespace {

Json rectangle(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return Json::array({place.left, place.top, place.right - place.left, place.bottom - place.top});
}

std::string windowText(HWND window) {
    std::array<char, 1024> text{};
    GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
    return scenario::jsonText(text.data());
}

std::string className(HWND window) {
    std::array<char, 256> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

BOOL CALLBACK addChild(HWND window, LPARAM list) {
    if (IsWindowVisible(window) == 0) return TRUE;
    const std::string text = windowText(window);
    if (!text.empty()) {
        reinterpret_cast<Json*>(list)->push_back({{"class", className(window)},
                                                  {"text", text},
                                                  {"place", rectangle(window)},
                                                  {"enabled", IsWindowEnabled(window) != 0}});
    }
    return TRUE;
}

BOOL CALLBACK addWindow(HWND window, LPARAM list) {
    if (IsWindowVisible(window) == 0) return TRUE;
    Json children = Json::array();
    EnumChildWindows(window, addChild, reinterpret_cast<LPARAM>(&children));
    reinterpret_cast<Json*>(list)->push_back({{"class", className(window)},
                                              {"title", windowText(window)},
                                              {"place", rectangle(window)},
                                              {"enabled", IsWindowEnabled(window) != 0},
                                              {"active", GetForegroundWindow() == window},
                                              {"minimised", IsIconic(window) != 0},
                                              {"children", children}});
    return TRUE;
}

BOOL CALLBACK countChild(HWND /*window*/, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

BOOL CALLBACK countWindow(HWND window, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    EnumChildWindows(window, countChild, count);
    return TRUE;
}

/// The process's own table of GDI objects, where the system does not count them.
DWORD gdiObjects() {
    const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (told != 0) return told;
    struct Entry {
        ULONG64 object;
        ULONG owner;
        USHORT unique;
        UCHAR type;
        UCHAR flags;
        ULONG64 user;
    };
    // Place of the table's address in the process block, 64 bits.
    constexpr std::size_t tableOffset = 0xF8;
    constexpr std::size_t tableSize = 0x4000;
    if constexpr (sizeof(void*) != 8) return 0;
    struct Information {
        LONG_PTR status;
        char* block;
        std::array<LONG_PTR, 4> rest;
    } information{};
    using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    FARPROC const routine = GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQueryInformationProcess");
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(routine));
    if (query == nullptr || query(GetCurrentProcess(), 0, &information, sizeof information, nullptr) != 0)
        return 0;
    const Entry* table = *reinterpret_cast<Entry**>(information.block + tableOffset);
    if (table == nullptr) return 0;
    DWORD count = 0;
    for (std::size_t n = 0; n < tableSize; ++n) count += table[n].type != 0 ? 1 : 0;
    return count;
}

/// Where the system does not count them, each number that a handle can have is tried.
DWORD handleCount() {
    DWORD count = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &count) != 0 && count != 0) return count;
    constexpr ULONG_PTR last = 0x4000;
    for (ULONG_PTR number = 4; number < last; number += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) != 0) ++count;
    }
    return count;
}

/// Bytes that this process has asked its heaps for and not given back. What the system keeps for itself
/// besides is not in it.
std::size_t heapBytes() {
    std::size_t bytes = 0;
    std::array<HANDLE, 64> heaps{};
    const DWORD count =
        std::min<DWORD>(GetProcessHeaps(heaps.size(), heaps.data()), static_cast<DWORD>(heaps.size()));
    for (DWORD n = 0; n < count; ++n) {
        HeapLock(heaps[n]);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[n], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
        }
        HeapUnlock(heaps[n]);
    }
    return bytes;
}

double lastDraw = 0;
int drawCount = 0;

double now() {
    FILETIME time{};
    GetSystemTimePreciseAsFileTime(&time);
    // 100 ns since 1601
    const auto ticks = (static_cast<ULONG64>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
    return static_cast<double>(ticks) / 1e7 - 11644473600.0;
}

void noteDraw(std::int32_t /*row*/, std::int32_t /*first*/, std::int32_t /*last*/) {
    lastDraw = now();
    ++drawCount;
}

}  // namespace

Json view() {
    return {{"cell", Json::array({charWidth, lineHeight})},
            {"background", screenBackIndex},
            {"mode", screenMode},
            {"cursor", Json::array({curCol, curRow})},
            {"cursorShown", cursorShown != 0},
            {"scroll", vscterm.value()},
            {"busy", inputBusy != 0},
            {"newestSlot", scrollbackMap(scrollbackLines)},
            {"textBlinkOff", textBlinkOff}};
}

Json places() {
    Json all = Json::object();
    if (picterm.native != nullptr) {
        HWND const window = picterm.native->window;
        POINT corner{0, 0};
        RECT client{};
        ClientToScreen(window, &corner);
        GetClientRect(window, &client);
        all["picterm"] = Json::array({corner.x, corner.y, client.right, client.bottom});
    }
    for (const Form* form : scenario::programForms()) {
        HWND const window = win32::windowOf(*form);
        if (window == nullptr) continue;
        Json controls = Json::object();
        for (const Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (control->native != nullptr && control->native->window != nullptr) {
                controls[scenario::scriptName(*control)] = rectangle(control->native->window);
            }
        }
        all[form->name()] = {{"place", rectangle(window)},
                             {"visible", IsWindowVisible(window) != 0},
                             {"title", windowText(window)},
                             {"controls", controls}};
    }
    return all;
}

Json windows() {
    Json list = Json::array();
    EnumThreadWindows(GetCurrentThreadId(), addWindow, reinterpret_cast<LPARAM>(&list));
    return list;
}

Json focus() {
    HWND const window = GetFocus();
    HWND const root = window != nullptr ? GetAncestor(window, GA_ROOT) : nullptr;
    const Form* const form = root != nullptr ? win32::formOf(root) : nullptr;
    if (form == nullptr) return {{"form", ""}, {"control", ""}};
    const Control* const control = win32::controlOf(*form, window);
    return {{"form", form->name()}, {"control", control != nullptr ? scenario::scriptName(*control) : ""}};
}

Json resources() {
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    int windowCount = 0;
    EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&windowCount));
    return {{"handles", handleCount()},
            {"gdi", gdiObjects()},
            {"windows", windowCount},
            {"user", windowCount + menusAndIcons()},
            {"systemTimers", systemTimers()},
            {"heap", heapBytes()},
            {"workingSet", memory.WorkingSetSize},
            {"peakWorkingSet", memory.PeakWorkingSetSize},
            {"pageFile", memory.PagefileUsage}};
}

Json drawn() {
    lineDrawn = noteDraw;
    watchDrawing(true);
    return {{"last", lastDraw}, {"count", drawCount}};
}

}  // namespace qxterm::probe
