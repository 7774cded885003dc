#pragma once

#include "platform/form.h"

namespace qxterm::win32 {

/// Disables the timers of a form that is being unloaded.
void disableTimers(const Form& form);

}  // namespace qxterm::win32
