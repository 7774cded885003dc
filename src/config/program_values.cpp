#include "config/program_values.h"

#include "diag/numbers.h"
#include "platform/profile_strings.h"
#include "platform/program.h"

namespace qxterm {

std::string g_sPathSep;
std::string g_sHelpFile;
std::string g_sLanguage;
bool g_bDialogCancelled = false;

void setDialogCancelled(bool cancelled) { g_bDialogCancelled = cancelled; }

void findProgramFolder() {
    g_sPathSep = program::separatorBehind(trimmed(program::folder()));
    g_sHelpFile = besideProgram("enu_te.chm");
}

void readLanguage() { g_sLanguage = getProfileString("intl", "sLanguage", "enu"); }

void resetProgramValues() {
    g_sPathSep.clear();
    g_sHelpFile.clear();
    g_sLanguage.clear();
    g_bDialogCancelled = false;
}

std::string besideProgram(const char* file) { return program::fileIn(trimmed(program::folder()), file); }

}  // namespace qxterm
