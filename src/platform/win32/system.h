#pragma once

// The one place that includes the system's headers, so that all files see them in the same order and shape.

#include "common/win32/system.h"

#include <commctrl.h>
