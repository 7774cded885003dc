#pragma once

namespace qxterm {

/// Set mode (h) and reset mode (l), with and without the private marker.
void changeModes(bool set);

}  // namespace qxterm
