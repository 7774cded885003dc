#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// The "Logging" setting: tracing is on exactly when it is "1". Written by setLogging, which readIniFile
/// calls.
extern std::string g_sLogging;
void setLogging(std::string_view setting);

/// True while tracing is on: lets callers skip composing lines that nobody keeps.
[[nodiscard]] inline bool tracing() { return g_sLogging == "1"; }

/// Appends one line to "output.txt" in the current directory while tracing is on. A failure (70, 75, 76) is
/// the caller's.
void writeLog(std::string_view line);

/// Writes a hex dump while tracing is on: 32 bytes to a line, the first line led by the heading ("BYTES<<"
/// sent, "BYTES>>" received) and a blank; behind a full line its characters above 31.
void logBytes(std::string_view heading, std::string_view bytes);

}  // namespace qxterm
