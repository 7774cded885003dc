#include "connection/auto_login.h"

#include "connection/send.h"
#include "connection/ssh_hooks.h"

namespace qxterm {

bool g_bLoginPromptSeen = false;
bool g_bLoginSent = false;
bool g_bLoginDone = false;
std::string g_sSSHLogin;
std::string g_sSSHPassword;

void clearLoginFlags() {
    g_bLoginPromptSeen = false;
    g_bLoginSent = false;
    g_bLoginDone = false;
}

bool passLoginFilter(std::string_view text) {
    const auto holds = [text](std::string_view part) { return text.find(part) != std::string_view::npos; };
    const bool loginPrompt = holds("ogin:");
    const bool passwordPrompt = holds("assword:");

    if (!g_bLoginPromptSeen) {
        if (!loginPrompt && holds("\xFF")) return false;  // telnet negotiation in front of the prompt
        if (loginPrompt) g_bLoginPromptSeen = true;
    }
    const bool echoedLogin = !g_sSSHLogin.empty() && holds(g_sSSHLogin);
    if (echoedLogin && !passwordPrompt) return false;
    if (holds("SunOS")) return false;  // the remote system's banner
    const bool lastLoginLine = holds("ast");
    if (loginPrompt && !lastLoginLine) {
        if (!g_bLoginSent) {
            sendText(g_sSSHLogin + '\r');
            g_bLoginSent = true;
            return false;
        }
        if (!passwordPrompt) return false;
    }
    if (passwordPrompt) {
        sendText(g_sSSHPassword + '\r');
        g_bLoginDone = true;
        runSshHook(sshHooks.ClearSSHText);
    }
    return true;
}

}  // namespace qxterm
