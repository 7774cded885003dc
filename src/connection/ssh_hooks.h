#pragma once

namespace qxterm {

/// What the other connection modules ask of the SSH bridge, which fills them at start-up; nothing happens
/// while they are empty.
struct SshHooks {
    /// Shows the banner on a cleared terminal picture.
    void (*DisplayBanner)() = nullptr;
    /// Puts up the local login prompt; reports as "SSH_Login".
    void (*doFakeLogin)() = nullptr;
    /// Clears the terminal picture of the local prompt's text.
    void (*ClearSSHText)() = nullptr;
    /// True while a helper process is recorded.
    bool (*helperRunning)() = nullptr;
    /// Ends the helper processes and forgets them.
    void (*endHelpers)() = nullptr;
};
inline SshHooks sshHooks;

inline void runSshHook(void (*hook)()) {
    if (hook != nullptr) hook();
}
[[nodiscard]] inline bool sshHelperRunning() {
    return sshHooks.helperRunning != nullptr && sshHooks.helperRunning();
}

}  // namespace qxterm
