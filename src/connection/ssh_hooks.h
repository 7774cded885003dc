#pragma once

#include <string_view>

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
    /// A session of any type ends: takes the local prompt down and gives up an attempt that still waits.
    void (*endLocalLogin)() = nullptr;
    /// The host's output is about to be shown.
    void (*hostTextShown)(std::string_view text) = nullptr;
};
inline SshHooks sshHooks;

inline void runSshHook(void (*hook)()) {
    if (hook != nullptr) hook();
}
inline void tellHostText(std::string_view text) {
    if (sshHooks.hostTextShown != nullptr) sshHooks.hostTextShown(text);
}
[[nodiscard]] inline bool sshHelperRunning() {
    return sshHooks.helperRunning != nullptr && sshHooks.helperRunning();
}

}  // namespace qxterm
