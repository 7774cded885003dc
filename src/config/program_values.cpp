#include "config/program_values.h"

#include "diag/numbers.h"
#include "platform/program.h"

namespace qxterm {

std::string g_sPathSep;
std::string g_sHelpFile;
std::string g_sLanguage;
bool g_bDialogCancelled = false;

std::string besideProgram(const char* file) { return program::fileIn(trimmed(program::folder()), file); }

}  // namespace qxterm
