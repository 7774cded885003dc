#include "terminal/commands/bell.h"

#include "platform/display.h"

namespace qxterm {

void ringBell() { display::beep(); }

}  // namespace qxterm
