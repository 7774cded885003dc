#pragma once

namespace qxterm {

/// Ties the program together: fills the hooks of all modules and connects every event to its handler, under
/// the name that the handler is reported by. Called by main; harmless when repeated.
void connectModules();

}  // namespace qxterm
