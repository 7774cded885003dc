#pragma once

namespace qxterm {

/// BEL.
void ringBell();

}  // namespace qxterm
