#pragma once

#include <string>

namespace qxterm {

/// What stands between the program's folder and a file's name: a backslash, or nothing when the folder ends
/// in one. Set by findProgramFolder.
extern std::string g_sPathSep;
/// Full name of the help file. Set by findProgramFolder.
extern std::string g_sHelpFile;
/// The user's language, three letters. Set by readLanguage.
extern std::string g_sLanguage;
/// The last Options or profile dialog was closed without OK. Set by the dialogs, cleared by New; by
/// setDialogCancelled.
extern bool g_bDialogCancelled;
void setDialogCancelled(bool cancelled);

/// Called by main.
void findProgramFolder();
void readLanguage();
/// The values above as they are before main has run.
void resetProgramValues();

/// The full name of a file that stands beside the program.
[[nodiscard]] std::string besideProgram(const char* file);

}  // namespace qxterm
