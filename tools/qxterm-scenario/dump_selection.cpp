#include "dumps.h"
#include "terminal/view/selection.h"

namespace qxterm::scenario {

Json dumpSelection() {
    return {{"dump", "selection"},
            {"start", Json::array({selStartCol, selStartRow})},
            {"end", Json::array({selEndCol, selEndRow})},
            {"text", jsonText(getSel())}};
}

}  // namespace qxterm::scenario
