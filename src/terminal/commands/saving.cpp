#include "terminal/commands/saving.h"

#include "terminal/commands/pending_run.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

void saveCursor() {
    if (curRow == statusRow) return;
    savedCol = curCol + pendingCount;  // pending text is counted, not stored
    savedRow = curRow;
    savedAttr = {curAttr, curFg, curBg};
    savedMode = screenMode;
}

void restoreCursor() {
    flushBuf();
    curCol = savedCol;
    curRow = savedRow;
    setCurrentAttr(savedAttr);  // the modes stay as they are
}

}  // namespace qxterm
