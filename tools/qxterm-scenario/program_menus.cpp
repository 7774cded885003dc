#include "program_menus.h"

#include "app/edit_menu.h"
#include "app/menus.h"

namespace qxterm::scenario {

const std::array<NamedMenu, 4>& programMenus() {
    static const std::array<NamedMenu, 4> menus{{{"profile", &mnuprofitem},
                                                 {"edit", &mnueditItem},
                                                 {"connection", &mnuconnitem},
                                                 {"help", &mnuhelpItem}}};
    return menus;
}

}  // namespace qxterm::scenario
