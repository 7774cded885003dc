#pragma once

#include <cstdint>

#include "platform/menu.h"

/// The menu bar of the main window.
namespace qxterm {

extern Menu mnuprofitem;
extern Menu mnueditItem;
extern Menu mnuconnitem;
extern Menu mnuhelpItem;

/// New, Open... and the recent profiles: not to be used during a session.
void enableProfileItems(bool enabled);

/// The Profile menu: New (0), Open... (1), Save (2), Save As... (3), recent profile (5 to 8), Exit (10).
/// Reports as "mnuprofItem_Click", by the event loop unless g_bTrapErrors is on.
void mnuprofItem_Click(std::int16_t index);
/// The Help menu: Contents (0), Technical Support (2), About (3).
void mnuhelpItem_Click(std::int16_t index);

/// Asks whether to save a changed profile. Unlike Save, it takes "(untitled)" for a name like any other.
void promptSaveProfile();

}  // namespace qxterm
