#pragma once

#include <string>
#include <string_view>

namespace qxterm::test {

/// Digits and characters of a dump, written by hand: 32 bytes to a line.
inline std::string dumpOf(std::string_view heading, std::string_view bytes) {
    constexpr const char* digits = "0123456789ABCDEF";
    constexpr std::size_t width = 32;
    std::string text{heading};
    text += ' ';
    for (std::size_t first = 0; first < bytes.size() || first == 0; first += width) {
        const std::string_view row = bytes.substr(first, width);
        for (const char c : row) {
            const auto byte = static_cast<unsigned char>(c);
            text += digits[byte >> 4U];
            text += digits[byte & 15U];
            text += ' ';
        }
        for (const char c : row) {
            if (row.size() == width && static_cast<unsigned char>(c) > 31) text += c;
        }
        text += "\r\n";
    }
    return text;
}

/// All lines of one arrival that is read as one block.
inline std::string arrivalOf(std::string_view bytes) {
    const std::string count = std::to_string(bytes.size());
    return "comnet2_DataArrival(): " + count + " bytes incoming, " + count + " bytes to process\r\n" +
           "comnet2_DataArrival(): processing " + count + " bytes in loop\r\n" +
           "GetNetworkBytes(): Requested count=" + count + ", actual: " + count + " bytes\r\n" +
           dumpOf("BYTES>>", bytes);
}

inline std::string serialTextOf(std::string_view text) {
    std::string lines{"Comser_OnComm() - MSCOMM_EV_RECEIVE\r\nComser_OnComm() - MSCOMM_EV_RECEIVE "};
    lines += text;
    return lines + "\r\n";
}

inline const std::string networkLines =
    "connectPort() - Connection Type: Network\r\nconnectPort() - Network Address: host1\r\n"
    "connectPort() - Network Port: 23\r\n";
inline const std::string serialLines =
    "connectPort() - Connection Type: Serial or Modem\r\nconnectPort() - Communication Port: 2\r\n"
    "connectPort() - Communication Port: 300,e,7,2\r\n"
    "connectPort() - Flow Control: MSCOMM_HANDSHAKE_RTSXONXOFF\r\n";
inline const std::string upLine = "connectPort() - g_bConnectActive is TRUE\r\n";

}  // namespace qxterm::test
