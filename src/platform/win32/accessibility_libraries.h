#pragma once

#include "platform/win32/system.h"

#include <oleacc.h>

namespace qxterm::win32 {

/// What COM and accessibility are asked for: all of it, or nothing, so that whatever holds an object of the
/// screen may call each of them.
struct AccessibilityLibraries {
    decltype(&::CoInitializeEx) coInitialize = nullptr;
    decltype(&::CoDisconnectObject) coDisconnect = nullptr;
    decltype(&::SysAllocStringLen) makeText = nullptr;
    decltype(&::LresultFromObject) resultFrom = nullptr;
    decltype(&::AccessibleObjectFromWindow) objectOf = nullptr;
    decltype(&::CreateStdAccessibleObject) standardObject = nullptr;

    [[nodiscard]] bool complete() const {
        return coInitialize != nullptr && coDisconnect != nullptr && makeText != nullptr &&
               resultFrom != nullptr && objectOf != nullptr && standardObject != nullptr;
    }
};

/// From the system's folder; loaded when somebody first reads the screen.
[[nodiscard]] const AccessibilityLibraries& accessibility();

}  // namespace qxterm::win32
