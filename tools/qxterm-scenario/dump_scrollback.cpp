#include "dump_lines.h"
#include "dumps.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm::scenario {

Json dumpScrollback() {
    Json lines = Json::array();
    for (std::int32_t position = scrollbackTop; position <= scrollbackLines; ++position) {
        const ScreenLine& line = virtualLine(position);
        lines.push_back({{"text", lineText(line)},
                         {"attrs", lineAttrs(line)},
                         {"used", line.usedLength},
                         {"flags", line.lineFlags},
                         {"sel", Json::array({line.selFirst, line.selLast})}});
    }
    return {{"dump", "scrollback"},
            {"top", scrollbackTop},
            {"min", vscterm.minimum()},
            {"value", vscterm.value()},
            {"lines", lines}};
}

}  // namespace qxterm::scenario
