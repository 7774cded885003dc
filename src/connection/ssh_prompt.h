#pragma once

#include <cstdint>
#include <string_view>

/// The imitation of a login dialogue that collects login name and password of an SSH session. It is drawn on
/// the picture box only: the screen's records do not know of it.
namespace qxterm {

/// Shows the banner, and the login prompt below it, on a cleared terminal picture.
void DisplayBanner();
/// Starts a local login with nothing typed, and puts up its prompt. Reports as "SSH_Login".
void doFakeLogin();
/// Puts up the prompt for the password on the next line.
void doFakePassword();
/// A character typed at the local prompt, 0 to 255. The carriage return or line feed behind the password
/// starts the connection, and returns when the status dialog has closed.
void ProcessSSHKeyStrokes(std::int16_t character);
/// Takes the local text down and repaints the terminal picture from the records.
void ClearSSHText();

/// True while characters typed belong to the local prompt.
[[nodiscard]] bool localPromptActive();
/// True while banner and dialogue stand on the picture instead of the records.
[[nodiscard]] bool localTextUp();
/// Paints all rows from the local text and returns true while it is up.
bool paintLocalText();
/// The session that the prompt was for has ended, or will not come: takes it down and forgets the password.
void endLocalPrompt();
/// The host's output is about to be shown: takes the local text down when there are letters or digits in it.
/// What the negotiation leaves over does not count.
void giveWayToHost(std::string_view text);
/// No prompt, nothing typed.
void resetLocalPrompt();

}  // namespace qxterm
