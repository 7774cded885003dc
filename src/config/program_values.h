#pragma once

#include <string>

namespace qxterm {

/// What stands between the program's folder and a file's name: a backslash, or nothing when the folder ends
/// in one. Set by main.
extern std::string g_sPathSep;
/// Full name of the help file. Set by main.
extern std::string g_sHelpFile;
/// The user's language, three letters. Set by main.
extern std::string g_sLanguage;
/// The last Options or profile dialog was closed without OK. Set by the dialogs, cleared by New.
extern bool g_bDialogCancelled;

/// The full name of a file that stands beside the program.
[[nodiscard]] std::string besideProgram(const char* file);

}  // namespace qxterm
