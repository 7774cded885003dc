// What a screen reader in another process learns of the program under test, as JSON.
//
//   screen-reader screen             the terminal's screen: the object, its rows, focus, selection and caret
//   screen-reader controls           each control of the window in front, and of the menu bar's window
//   screen-reader events SECONDS     prints "listening", then what was announced meanwhile
//   screen-reader held               prints "held" with the screen's object in hand; when the window has
//   gone, what
//                                    its routines then answer

#include <windows.h>

#include <oleacc.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = nlohmann::json;

constexpr const char* mainWindowClass = "QxtermMain";
constexpr const char* screenClass = "QxtermPicture";

HWND mainWindow() { return FindWindowA(mainWindowClass, nullptr); }
HWND screenWindow() { return FindWindowExA(mainWindow(), nullptr, screenClass, nullptr); }

int say(const Json& told) {
    std::puts(told.dump().c_str());
    std::fflush(stdout);
    return 0;
}

std::string utf8(const wchar_t* text, int length) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), ' ');
    WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(), size, nullptr, nullptr);
    return result;
}

/// The text that a routine of the object gives; null when it gives none, a number when it fails.
template <class Routine>
Json textFrom(Routine&& routine) {
    BSTR text = nullptr;
    const HRESULT result = routine(&text);
    if (FAILED(result)) return static_cast<std::uint32_t>(result);
    if (text == nullptr) return nullptr;
    Json told = utf8(text, static_cast<int>(SysStringLen(text)));
    SysFreeString(text);
    return told;
}

VARIANT number(LONG value) {
    VARIANT child{};
    child.vt = VT_I4;
    child.lVal = value;
    return child;
}

/// What a variant holds: a child's number, the numbers that an enumerator gives, or null.
Json childrenIn(const VARIANT& found) {
    if (found.vt == VT_I4) return found.lVal;
    if (found.vt != VT_UNKNOWN) return nullptr;
    Json all = Json::array();
    IEnumVARIANT* list = nullptr;
    if (FAILED(found.punkVal->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&list))))
        return "no list";
    VARIANT one{};
    ULONG fetched = 0;
    while (list->Next(1, &one, &fetched) == S_OK && fetched == 1) all.push_back(one.lVal);
    list->Release();
    return all;
}

Json placeOf(IAccessible& object, LONG child) {
    std::array<LONG, 4> place{};
    const HRESULT result = object.accLocation(&place[0], &place[1], &place[2], &place[3], number(child));
    return result == S_OK ? Json(place) : Json(static_cast<std::uint32_t>(result));
}

Json told(IAccessible& object, LONG child) {
    VARIANT role{};
    VARIANT state{};
    object.get_accRole(number(child), &role);
    object.get_accState(number(child), &state);
    return {
        {"name", textFrom([&](BSTR* text) { return object.get_accName(number(child), text); })},
        {"value", textFrom([&](BSTR* text) { return object.get_accValue(number(child), text); })},
        {"description", textFrom([&](BSTR* text) { return object.get_accDescription(number(child), text); })},
        {"shortcut",
         textFrom([&](BSTR* text) { return object.get_accKeyboardShortcut(number(child), text); })},
        {"role", role.vt == VT_I4 ? role.lVal : -1},
        {"state", state.vt == VT_I4 ? state.lVal : -1},
        {"place", placeOf(object, child)}};
}

/// The object of a window's client area; null when there is none.
IAccessible* objectOf(HWND window) {
    void* found = nullptr;
    const HRESULT result =
        AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, &found);
    if (SUCCEEDED(result)) return static_cast<IAccessible*>(found);
    std::fprintf(stderr, "no object: %08lx\n", static_cast<unsigned long>(result));
    return nullptr;
}

Json caretNow() {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (GetGUIThreadInfo(GetWindowThreadProcessId(mainWindow(), nullptr), &thread) == 0) return nullptr;
    const RECT& area = thread.rcCaret;
    return {{"here", thread.hwndCaret == screenWindow()},
            {"focus", thread.hwndFocus == screenWindow()},
            {"place", {area.left, area.top, area.right - area.left, area.bottom - area.top}}};
}

/// The children in the order of a walk from the first, to the next one as long as there is one, and of one
/// back.
Json walk(IAccessible& object, LONG first, LONG next) {
    Json visited = Json::array();
    VARIANT at{};
    HRESULT result = object.accNavigate(first, number(CHILDID_SELF), &at);
    while (result == S_OK && at.vt == VT_I4 && visited.size() < 100) {
        visited.push_back(at.lVal);
        const VARIANT from = at;
        result = object.accNavigate(next, from, &at);
    }
    return visited;
}

int readScreen() {
    HWND const window = screenWindow();
    IAccessible* const object = objectOf(window);
    if (object == nullptr) return say("no object");
    Json all = told(*object, CHILDID_SELF);
    LONG count = 0;
    object->get_accChildCount(&count);
    all["rows"] = Json::array();
    all["hits"] = Json::array();
    for (LONG row = 1; row <= count; ++row) {
        Json one = told(*object, row);
        VARIANT hit{};
        const auto place = one["place"].get<std::array<LONG, 4>>();
        object->accHitTest(place[0] + place[2] / 2, place[1] + place[3] / 2, &hit);
        all["hits"].push_back(childrenIn(hit));
        all["rows"].push_back(std::move(one));
    }
    VARIANT found{};
    const HRESULT outside = object->accHitTest(-10, -10, &found);
    all["outside"] = static_cast<std::uint32_t>(outside);
    object->get_accFocus(&found);
    all["focus"] = childrenIn(found);
    VARIANT selected{};
    object->get_accSelection(&selected);
    all["selection"] = childrenIn(selected);
    all["forward"] = walk(*object, NAVDIR_FIRSTCHILD, NAVDIR_NEXT);
    all["backward"] = walk(*object, NAVDIR_LASTCHILD, NAVDIR_PREVIOUS);
    std::vector<VARIANT> children(100);
    LONG obtained = 0;
    AccessibleChildren(object, 0, static_cast<LONG>(children.size()), children.data(), &obtained);
    all["children"] = Json::array();
    for (LONG n = 0; n < obtained; ++n)
        all["children"].push_back(childrenIn(children[static_cast<std::size_t>(n)]));
    all["beyond"] = textFrom([&](BSTR* text) { return object->get_accValue(number(count + 1), text); });
    HWND owner = nullptr;
    IDispatch* parent = nullptr;
    object->get_accParent(&parent);
    all["parent"] = nullptr;
    if (parent != nullptr) {
        IAccessible* above = nullptr;
        parent->QueryInterface(IID_IAccessible, reinterpret_cast<void**>(&above));
        if (above != nullptr && SUCCEEDED(WindowFromAccessibleObject(above, &owner)))
            all["parent"] = owner == window ? "the window" : "another window";
    }
    all["caret"] = caretNow();
    return say(all);
}

Json textOf(HWND window, int(WINAPI* routine)(HWND, LPSTR, int)) {
    std::array<char, 200> text{};
    routine(window, text.data(), static_cast<int>(text.size()));
    return Json(std::string{text.data()});
}

/// The label by which the system calls a field: the static text or the frame ahead of it, seen or not.
Json labelOf(HWND window) {
    HWND const before = GetWindow(window, GW_HWNDPREV);
    if (before == nullptr || (SendMessageA(before, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) == 0) return nullptr;
    return textOf(before, GetWindowTextA);
}

BOOL CALLBACK addControl(HWND window, LPARAM where) {
    auto& all = *reinterpret_cast<Json*>(where);
    if (IsWindowVisible(window) == 0) return TRUE;
    IAccessible* const object = objectOf(window);
    Json one = object != nullptr ? told(*object, CHILDID_SELF) : Json{{"name", nullptr}};
    if (object != nullptr) object->Release();
    one["id"] = GetDlgCtrlID(window);
    one["label"] = labelOf(window);
    one["class"] = textOf(window, GetClassNameA);
    one["tabStop"] = (GetWindowLongA(window, GWL_STYLE) & WS_TABSTOP) != 0;
    one["enabled"] = IsWindowEnabled(window) != 0;
    all.push_back(std::move(one));
    return TRUE;
}

/// The window of the program that answers its user now.
HWND windowInFront() {
    HWND const main = mainWindow();
    if (main == nullptr) return nullptr;
    return GetLastActivePopup(main);
}

int readControls() {
    HWND const window = windowInFront();
    Json all{{"title", textOf(window, GetWindowTextA)}, {"controls", Json::array()}};
    EnumChildWindows(window, addControl, reinterpret_cast<LPARAM>(&all["controls"]));
    return say(all);
}

/// How often each event was announced, and for which children.
struct Heard {
    std::map<std::string, int> counts;
    std::map<LONG, int> rows;
};
Heard heard;

void CALLBACK hear(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG object, LONG child,
                   DWORD /*thread*/, DWORD /*time*/) {
    const bool ofScreen = window == screenWindow();
    if (event == EVENT_OBJECT_VALUECHANGE && object == OBJID_CLIENT && ofScreen) {
        ++heard.counts["value"];
        ++heard.rows[child];
    } else if (event == EVENT_OBJECT_SELECTIONWITHIN && ofScreen) {
        ++heard.counts["selection"];
    } else if (event == EVENT_OBJECT_FOCUS && ofScreen) {
        ++heard.counts["focus"];
    } else if (event == EVENT_OBJECT_LOCATIONCHANGE && object == OBJID_CARET && ofScreen) {
        ++heard.counts["caret"];
    }
}

int listen(int seconds) {
    DWORD process = 0;
    GetWindowThreadProcessId(mainWindow(), &process);
    HWINEVENTHOOK const hook =
        SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, hear, process, 0, WINEVENT_OUTOFCONTEXT);
    if (hook == nullptr) return say("no hook");
    say("listening");
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000;
    while (GetTickCount64() < end) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageA(&message);
    }
    UnhookWinEvent(hook);
    Json rows = Json::object();
    for (const auto& [row, count] : heard.rows) rows[std::to_string(row)] = count;
    return say({{"counts", heard.counts}, {"rows", rows}});
}

int hold() {
    HWND const window = screenWindow();
    IAccessible* const object = objectOf(window);
    if (object == nullptr) return say("no object");
    say("held");
    while (IsWindow(window) != 0) Sleep(20);
    LONG count = 0;
    const HRESULT answer = object->get_accChildCount(&count);
    Json all{{"value", textFrom([&](BSTR* text) { return object->get_accValue(number(1), text); })},
             {"children", static_cast<std::uint32_t>(answer)},
             {"place", placeOf(*object, 1)}};
    object->Release();
    return say(all);
}

}  // namespace

int main(int count, char** arguments) {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const std::string_view wish = count > 1 ? arguments[1] : "";
    if (wish == "screen") return readScreen();
    if (wish == "controls") return readControls();
    if (wish == "events" && count > 2) return listen(std::atoi(arguments[2]));
    if (wish == "held") return hold();
    std::fputs("screen-reader screen | controls | events SECONDS | held\n", stderr);
    return 2;
}
