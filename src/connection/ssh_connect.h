#pragma once

namespace qxterm {

/// Starts the helpers for what was typed into the local prompt, connects the socket to the local end of the
/// tunnel and shows the status dialog until the session is up or given up. Called when the password has been
/// typed.
void localConnect();

/// A local connect that is still waiting for its helpers is not to go on.
void abandonLocalConnect();

}  // namespace qxterm
