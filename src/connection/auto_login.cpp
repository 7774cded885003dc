#include "connection/auto_login.h"

#include <algorithm>

#include "connection/send.h"
#include "connection/ssh_prompt.h"

namespace qxterm {

bool g_bLoginPromptSeen = false;
bool g_bLoginSent = false;
bool g_bLoginDone = false;
std::string g_sSSHLogin;
std::string g_sSSHPassword;

namespace {

/// Room from the first character on: while a password of usual length is typed, it never moves.
constexpr std::size_t passwordRoom = 64;

/// Zeroes all that the text has room for. The stores are volatile, so that they are made although nobody
/// reads them.
void overwrite(std::string& secret) {
    secret.resize(secret.capacity());
    volatile char* const characters = secret.data();
    for (std::size_t n = 0; n < secret.size(); ++n) characters[n] = 0;
    secret.clear();
}

void makeRoom() {
    const std::string& password = g_sSSHPassword;
    if (password.capacity() >= passwordRoom && password.size() < password.capacity()) return;
    std::string roomier;
    roomier.reserve(std::max(passwordRoom, password.size() * 2));
    roomier.assign(password);
    overwrite(g_sSSHPassword);
    g_sSSHPassword.swap(roomier);
}

void removeLast(std::string& text) {
    if (!text.empty()) text.pop_back();
}

}  // namespace

void addToLogin(char character) { g_sSSHLogin += character; }

void removeLastOfLogin() { removeLast(g_sSSHLogin); }

void removeLastOfPassword() { removeLast(g_sSSHPassword); }

void forgetLogin() { g_sSSHLogin.clear(); }

void addToPassword(char character) {
    makeRoom();
    g_sSSHPassword += character;
}

void forgetPassword() { overwrite(g_sSSHPassword); }

void clearLoginFlags() {
    g_bLoginPromptSeen = false;
    g_bLoginSent = false;
    g_bLoginDone = false;
}

void endAutoLogin() {
    g_bLoginDone = true;
    forgetPassword();
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
        addToPassword('\r');
        sendText(g_sSSHPassword);
        forgetPassword();
        g_bLoginDone = true;
        ClearSSHText();
    }
    return true;
}

}  // namespace qxterm
