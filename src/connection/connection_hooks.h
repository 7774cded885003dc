#pragma once

namespace qxterm {

/// What the transports ask of the connection manager above them; filled at start-up, nothing happens while
/// they are empty.
struct ConnectionHooks {
    void (*setConnItems)(bool connected) = nullptr;
    void (*disconnectPort)() = nullptr;
    /// Shows the status dialog and returns when it has closed.
    void (*showStatusDialog)() = nullptr;
};
inline ConnectionHooks connectionHooks;

inline void tellConnected() {
    if (connectionHooks.setConnItems != nullptr) connectionHooks.setConnItems(true);
}
inline void askDisconnect() {
    if (connectionHooks.disconnectPort != nullptr) connectionHooks.disconnectPort();
}

}  // namespace qxterm
