#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "diag/error_trap.h"

/// What a session runs on. Each transport is one row; whatever differs between the connection types stands in
/// it, and everybody else asks the session (session.h), which keeps its row.
namespace qxterm {

/// How one type of connection is made, used and given up. What a row leaves out does nothing.
struct Transport {
    /// Of connectType.
    std::int16_t type;

    /// Begins an attempt, inside connectPort's trap, and calls startSession once it is under way. True when
    /// connectPort is to go on and wait for the session.
    bool (*start)(ErrorTrap& trap);
    /// Closes what `start` has opened. Called when the session ends, and by a Disconnect without one.
    void (*stop)() = [] {};

    /// Sends what was typed or pasted.
    void (*send)(std::string_view text) = [](std::string_view) {};
    /// Send Break is enabled during a session. Not all that offer it can carry it out.
    bool offersBreak = true;
    void (*sendBreak)() = [] {};
    /// The line tells that the other end's carrier is gone.
    void (*carrierLost)() = [] {};

    /// The status dialog's text while it waits; empty when it has none.
    std::string (*waitingText)() = [] { return std::string{}; };
    /// Milliseconds after which an attempt has timed out. With none, that is at the dialog's first tick.
    std::int32_t (*patience)() = [] { return 0; };
    /// Begins a timed-out attempt anew, inside the dialog's trap. False when it is only said to be retried:
    /// it goes on until it succeeds or the user cancels it.
    bool (*retry)(ErrorTrap& trap) = [](ErrorTrap&) { return false; };
};

extern const Transport networkTransport;
extern const Transport serialTransport;
extern const Transport modemTransport;
extern const Transport sshTransport;
extern const Transport loopTransport;
/// For every number that is no type of these.
extern const Transport noTransport;

inline constexpr std::array transports{&networkTransport, &serialTransport, &modemTransport, &sshTransport,
                                       &loopTransport};

/// The row of a connection type.
[[nodiscard]] const Transport& transportOf(std::int16_t type);

}  // namespace qxterm
