#pragma once

#include <cstdint>

/// Opens and closes the session, and the menu that does so.
namespace qxterm {

/// The user chose Disconnect. Set by mnuconnitem_Click.
extern bool userDisconnect;
/// Called when the main window loads.
void forgetUserDisconnect();

/// Entries of the Connection menu.
namespace connectionItem {
inline constexpr std::int16_t connect = 0;
inline constexpr std::int16_t disconnect = 1;
inline constexpr std::int16_t sendBreak = 2;
inline constexpr std::int16_t options = 3;
}  // namespace connectionItem

/// Starts a connection of the current profile's type. Returns when the status dialog has closed or, for SSH,
/// once the local login prompt is up; does nothing while a session is up. Error 6 for a port that is none,
/// errors of the controls.
void connectPort();
/// Ends the session or attempt, resets the terminal (the function-key bar stays as it was) and clears
/// g_bConnectActive.
void disconnectPort();
/// Enables and disables the entries of the Connection and Profile menus.
void setConnItems(bool connected);
/// The Connection menu; index as in connectionItem.
void mnuconnitem_Click(std::int16_t index);

}  // namespace qxterm
