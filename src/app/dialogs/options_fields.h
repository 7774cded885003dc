#pragma once

#include <cstdint>

/// How the Options dialog's working copy of the profile gets into the controls and out of them again.
namespace qxterm::options {

/// Copies the current profile into the working copy and fills all controls from it. Called when the dialog
/// loads.
void fillControls();

/// The type that OK gives the profile; an option button sets it.
void setWorkingType(std::int16_t type);
/// The font size (points) that OK gives the profile; shows the sample text in it.
void setSelectedFontSize(float points);
/// Shows the network frame or, for a serial line or modem, the frame of line settings.
void showNetworkSettings(bool network);

/// OK: checks what was entered, stores it in the current profile and closes the dialog; a message tells what
/// is wrong, and the dialog stays. Reports as "recordChanges".
void recordChanges();

}  // namespace qxterm::options
