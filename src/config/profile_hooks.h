#pragma once

#include <cstdint>
#include <string_view>

namespace qxterm {

/// What the profiles ask of the floors above; filled at start-up.
struct ProfileHooks {
    /// The current profile's font size was set: measures and lays out the screen anew.
    void (*resizeScreen)() = [] {};
    /// The current profile's name was set.
    void (*setCaption)() = [] {};
    /// Shows an entry of the Profile menu (index 5 to 8); disables it during a session. Enabling is left to
    /// setConnItems, since the menu is also locked while a login prompt waits.
    void (*showRecentProfile)(std::int16_t index, std::string_view caption) = [](std::int16_t,
                                                                                 std::string_view) {};
};
inline ProfileHooks profileHooks;

}  // namespace qxterm
