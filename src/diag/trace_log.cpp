#include "diag/trace_log.h"

#include "platform/program.h"

namespace qxterm {

std::string g_sLogging;

void writeLog(std::string_view line) {
    if (tracing()) program::appendTrace(line);
}

void logBytes(std::string_view heading, std::string_view bytes) {
    if (!tracing()) return;
    constexpr std::size_t bytesPerLine = 32;
    constexpr const char* digits = "0123456789ABCDEF";
    std::string line{heading};
    line += ' ';
    for (std::size_t first = 0; first < bytes.size() || first == 0; first += bytesPerLine) {
        const std::string_view row = bytes.substr(first, bytesPerLine);
        for (const char c : row) {
            const auto byte = static_cast<unsigned char>(c);
            line += digits[byte >> 4U];
            line += digits[byte & 15U];
            line += ' ';
        }
        if (row.size() == bytesPerLine) {
            for (const char c : row) {
                if (static_cast<unsigned char>(c) > 31) line += c;
            }
        }
        writeLog(line);
        line.clear();
    }
}

void setLogging(std::string_view setting) { g_sLogging = setting; }

}  // namespace qxterm
