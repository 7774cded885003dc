#include "terminal/commands/status_row.h"

#include "terminal/commands/pending_run.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

void toStatusRow(const Parameters& parameters) {
    flushBuf();
    curRow = statusRow;
    if (parameters.values().size() >= 2) curCol = parameters.valueOr(2, 1) - 1;
}

}  // namespace qxterm
