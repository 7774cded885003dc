#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "trace_reader.h"

namespace qxterm::scenario {

/// What the log tells about an attempt to connect, until enough is known to carry it out.
struct ReplayAttempt {
    enum class Type : std::uint8_t { none, network, ssh, serial, modem, loop };

    Type type = Type::none;
    std::size_t line = 0;  ///< of the log
    std::string host{};
    std::string port{};
    std::string commPort{};
    std::string lineSettings{};
    std::optional<std::int64_t> flowControl{};
    std::optional<std::string> reset{};  ///< the modem's; with the carriage return
    std::optional<std::string> dial{};
    std::optional<std::string> login{};  ///< of an SSH session; with the carriage return
    std::optional<std::string> password{};
    bool firstArrival = false;   ///< the program's first arrival comes in it
    bool promptSeen = false;     ///< the last block asked for the login name
    bool passwordAsked = false;  ///< or for the password

    /// Takes what belongs to the attempt. True when the entry must wait until the attempt is carried out.
    bool learn(const TraceEntry& entry);
    /// True when the entry, which has just been learnt from, is the last that had to be waited for.
    [[nodiscard]] bool decidedBy(const TraceEntry& entry) const;

private:
    void learnOfSsh(const TraceEntry& entry);
};

/// True for the answers that the program gives to telnet options.
[[nodiscard]] bool isTelnetAnswer(std::string_view bytes);
/// What can stand behind a key of the settings.
[[nodiscard]] std::string asSetting(std::string_view value);
/// A line as it was sent, without the carriage return at its end.
[[nodiscard]] std::string withoutReturn(std::string_view text);

}  // namespace qxterm::scenario
