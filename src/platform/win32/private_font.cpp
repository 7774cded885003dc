#include "platform/win32/private_font.h"

#include <string>

#include "platform/program.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {
namespace {

const std::string& fontFile() {
    static const std::string file = [] {
        const std::string folder = program::folder();
        return folder + (folder.ends_with('\\') ? "" : "\\") + "QXTERM.ttf";
    }();
    return file;
}

}  // namespace

PrivateFont::PrivateFont() { AddFontResourceExA(fontFile().c_str(), FR_PRIVATE, nullptr); }
PrivateFont::~PrivateFont() { RemoveFontResourceExA(fontFile().c_str(), FR_PRIVATE, nullptr); }

}  // namespace qxterm::win32
