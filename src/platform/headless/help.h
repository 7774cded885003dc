#pragma once

namespace qxterm::headless {

/// No help window is open.
void resetHelp();

}  // namespace qxterm::headless
