#include "platform/win32/private_font.h"

#include <string>

#include "platform/program.h"
#include "platform/win32/system.h"

namespace qxterm::win32 {
namespace {

const std::string& fontFile() {
    static const std::string file = program::fileIn(program::folder(), "QXTERM.ttf");
    return file;
}

}  // namespace

PrivateFont::PrivateFont() { AddFontResourceExA(fontFile().c_str(), FR_PRIVATE, nullptr); }
PrivateFont::~PrivateFont() { RemoveFontResourceExA(fontFile().c_str(), FR_PRIVATE, nullptr); }

}  // namespace qxterm::win32
