#include "platform/win32/serial_settings.h"

#include <array>
#include <charconv>

namespace qxterm::win32 {
namespace {

constexpr std::size_t partCount = 4;
using Parts = std::array<std::string_view, partCount>;

std::string_view trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::optional<Parts> split(std::string_view settings) {
    Parts parts;
    for (std::size_t n = 0; n < partCount; ++n) {
        const std::size_t comma = settings.find(',');
        const bool last = n + 1 == partCount;
        if (last != (comma == std::string_view::npos)) return std::nullopt;
        parts[n] = trim(settings.substr(0, comma));
        if (!last) settings.remove_prefix(comma + 1);
    }
    return parts;
}

std::optional<DWORD> number(std::string_view text) {
    DWORD value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The first letter decides: "n" and "None" are the same.
std::optional<BYTE> parity(std::string_view text) {
    switch (text.empty() ? '\0' : text.front()) {
        case 'n':
        case 'N': return NOPARITY;
        case 'e':
        case 'E': return EVENPARITY;
        case 'o':
        case 'O': return ODDPARITY;
        case 'm':
        case 'M': return MARKPARITY;
        case 's':
        case 'S': return SPACEPARITY;
        default: return std::nullopt;
    }
}

std::optional<BYTE> stopBits(std::string_view text) {
    if (text == "1") return ONESTOPBIT;
    if (text == "1.5") return ONE5STOPBITS;
    if (text == "2") return TWOSTOPBITS;
    return std::nullopt;
}

void applyHandshaking(DCB& control, Handshaking handshaking) {
    const bool software = handshaking == Handshaking::xonXoff || handshaking == Handshaking::rtsXonXoff;
    const bool hardware = handshaking == Handshaking::rts || handshaking == Handshaking::rtsXonXoff;
    control.fOutX = software;
    control.fInX = software;
    control.fOutxCtsFlow = hardware;
    control.fRtsControl = hardware ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
    control.fOutxDsrFlow = FALSE;
    control.fDsrSensitivity = FALSE;
    control.fDtrControl = DTR_CONTROL_ENABLE;
    control.XonChar = 17;
    control.XoffChar = 19;
}

}  // namespace

bool applySettings(DCB& control, std::string_view settings, Handshaking handshaking) {
    const std::optional<Parts> parts = split(settings);
    if (!parts) return false;
    const auto baud = number((*parts)[0]);
    const auto parityCode = parity((*parts)[1]);
    const auto dataBits = number((*parts)[2]);
    const auto stopCode = stopBits((*parts)[3]);
    if (!baud || !parityCode || !dataBits || !stopCode || *dataBits < 5 || *dataBits > 8) return false;
    control.BaudRate = *baud;
    control.Parity = *parityCode;
    control.fParity = *parityCode != NOPARITY;
    control.ByteSize = static_cast<BYTE>(*dataBits);
    control.StopBits = *stopCode;
    control.fBinary = TRUE;
    control.fNull = FALSE;
    control.fErrorChar = FALSE;
    control.fAbortOnError = FALSE;  // a framing error must not stop the line
    applyHandshaking(control, handshaking);
    return true;
}

}  // namespace qxterm::win32
