#pragma once

namespace qxterm::win32 {

/// The font "QXTERM" out of the program's folder, for this program alone and as long as this object lives.
/// Without the file the system draws with a font of its own choice.
class PrivateFont {
public:
    PrivateFont();
    ~PrivateFont();
    PrivateFont(const PrivateFont&) = delete;
    PrivateFont& operator=(const PrivateFont&) = delete;
};

}  // namespace qxterm::win32
