#include "platform/win32/accessibility_libraries.h"

namespace qxterm::win32 {
namespace {

template <class Routine>
void find(HMODULE library, const char* name, Routine& routine) {
    if (library == nullptr) return;
    routine = reinterpret_cast<Routine>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

AccessibilityLibraries load() {
    const auto open = [](const char* name) {
        return LoadLibraryExA(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    };
    AccessibilityLibraries all;
    HMODULE const com = open("ole32.dll");
    find(com, "CoInitializeEx", all.coInitialize);
    find(com, "CoDisconnectObject", all.coDisconnect);
    find(open("oleaut32.dll"), "SysAllocStringLen", all.makeText);
    HMODULE const accessibility = open("oleacc.dll");
    find(accessibility, "LresultFromObject", all.resultFrom);
    find(accessibility, "AccessibleObjectFromWindow", all.objectOf);
    find(accessibility, "CreateStdAccessibleObject", all.standardObject);
    // The one thread has the windows, and with them the calls of other processes. It stays so until the
    // program ends.
    if (all.complete() && FAILED(all.coInitialize(nullptr, COINIT_APARTMENTTHREADED))) return {};
    return all;
}

}  // namespace

const AccessibilityLibraries& accessibility() {
    static const AccessibilityLibraries all = load();
    return all;
}

}  // namespace qxterm::win32
