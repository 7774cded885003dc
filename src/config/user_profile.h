#pragma once

#include <cstdint>
#include <string>

namespace qxterm {

/// The current profile has changes that were not saved. Set by the Options dialog, cleared by readIniFile,
/// writeUserProf and a No to saving them; by setProfileChanged.
extern bool g_bProfileChanged;
void setProfileChanged(bool changed);
/// The current profile has no name of its own yet. Set by New, cleared by main, saving and a No to saving it;
/// by setProfileNew.
extern bool g_bProfileNew;
void setProfileNew(bool isNew);

/// TRUE while the profile's type is SSH. Set when such a profile is read and when an SSH connection is
/// started, cleared when a network connection is started; by setSshMode.
extern bool g_bSSHMode;
void setSshMode(bool on);

/// Reads a profile's section into CurrentProfile: resizes the screen, sets the connection type and the
/// caption. A value that is no number of its width is reported and the keys behind it keep what they were.
/// Host and port are read for the types net and ssh only.
void readUserProf(const std::string& name);

/// Writes CurrentProfile to the section of its name, adds the name to the known ones and clears both flags
/// above.
void writeUserProf();

}  // namespace qxterm
