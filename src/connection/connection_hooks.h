#pragma once

#include <cstdint>

namespace qxterm {

/// What the connections ask of the application above them.
struct ConnectionHooks {
    void (*unloadProfileDialog)() = [] {};
    /// Opens the Options dialog and returns when it has closed.
    void (*showOptions)() = [] {};
    /// An entry of the Connection menu; index as in connectionItem.
    void (*enableConnectionItem)(std::int16_t index, bool enabled) = [](std::int16_t, bool) {};
    /// The Profile menu's entries that must not be used during a session.
    void (*enableProfileItems)(bool enabled) = [](bool) {};
    /// What Copy of the Edit menu does, when something is selected.
    void (*copySelection)() = [] {};
};
inline ConnectionHooks connectionHooks;

}  // namespace qxterm
