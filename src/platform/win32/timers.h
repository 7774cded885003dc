#pragma once

#include "platform/form.h"

namespace qxterm::win32 {

/// Disables the timers of a form that is being unloaded.
void disableTimers(const Form& form);
/// Asks the system again for timers that it did not have.
void startRefusedTimers();

}  // namespace qxterm::win32
