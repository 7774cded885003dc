#pragma once

namespace qxterm {

/// Brings all of the program's variables to their start values, the screen blank, and ties the modules
/// together, so that every test and every scenario begins from the same program. The platform's own state is
/// not touched.
void resetProgram();

}  // namespace qxterm
