#include "dumps.h"
#include "program_menus.h"

namespace qxterm::scenario {

Json dumpMenus() {
    Json object{{"dump", "menus"}};
    for (const NamedMenu& named : programMenus()) {
        Json entries = Json::array();
        for (const Menu::Entry& entry : named.menu->entries()) {
            entries.push_back({{"index", entry.index},
                               {"caption", jsonText(entry.caption)},
                               {"enabled", entry.enabled},
                               {"visible", entry.visible}});
        }
        object[named.name] = entries;
    }
    return object;
}

}  // namespace qxterm::scenario
