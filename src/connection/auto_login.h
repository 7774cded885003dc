#pragma once

#include <string>
#include <string_view>

/// Types login name and password of an SSH session into the remote login dialogue, and keeps that dialogue
/// off the screen.
namespace qxterm {

/// The remote "ogin:" prompt has been seen.
extern bool g_bLoginPromptSeen;
/// The login name has been sent.
extern bool g_bLoginSent;
/// The password has been sent; automatic login is over.
extern bool g_bLoginDone;
/// What the user typed into the local prompt, which writes it through the routines below. The password is
/// there until it has been sent, or will not be.
extern std::string g_sSSHLogin;
extern std::string g_sSSHPassword;

void addToLogin(char character);
/// Nothing when there is none.
void removeLastOfLogin();
void removeLastOfPassword();
void forgetLogin();
/// Appends a character to the password, and leaves nothing of it in memory that is given back.
void addToPassword(char character);
/// Overwrites the password in its place, and clears it.
void forgetPassword();

/// Clears the three flags. Called when a network or SSH connection starts and when an SSH session ends.
void clearLoginFlags();

/// Nothing is left to log in to: what comes is shown, and the password is forgotten.
void endAutoLogin();

/// Answers the prompts in a received block; returns false when the block is not to be shown. Called for SSH
/// sessions until g_bLoginDone.
[[nodiscard]] bool passLoginFilter(std::string_view text);

}  // namespace qxterm
