#pragma once

#include "terminal/commands/sequence.h"

/// Modes, with and without the private marker.
namespace qxterm {

void setModes(const Parameters& parameters);    ///< h
void resetModes(const Parameters& parameters);  ///< l

}  // namespace qxterm
