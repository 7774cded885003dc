#pragma once

#include <array>

#include "platform/menu.h"

namespace qxterm::scenario {

/// A menu of the menu bar and the word that scripts and dumps have for it.
struct NamedMenu {
    const char* name;
    Menu* menu;
};

/// profile, edit, connection, help.
[[nodiscard]] const std::array<NamedMenu, 4>& programMenus();

}  // namespace qxterm::scenario
