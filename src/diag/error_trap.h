#pragma once

#include <cstdint>
#include <new>
#include <string_view>

#include "diag/report_error.h"
#include "platform/run_time_error.h"

namespace qxterm {

/// Arms the traps of the routines that arm theirs on request only. Set FALSE at start, by setTrapErrors, and
/// never changed.
extern bool g_bTrapErrors;
void setTrapErrors(bool armed);

/// When a routine's trap is armed.
enum class Arm : std::uint8_t { always, onRequest };

/// A failure to be met by the next call of a routine, at its first step: the means by which every error path
/// is tried. The routine's name is the one it is reported under. Any number can be planned; those of one
/// routine are met in order.
void planFault(std::string_view routine, std::int16_t number);
/// Forgets the planned failures.
void clearPlannedFaults();

namespace detail {
extern bool faultPlanned;
/// Raises the planned failure when it is this routine's, once.
void meetPlannedFault(const char* routine);
}  // namespace detail

/// True while no failure is planned: then a short way past routines of which nothing can fail does what they
/// would do. Every short way asks here.
[[nodiscard]] inline bool shortWaysOpen() { return !detail::faultPlanned; }

/// The error trap of one routine.
///
/// `run` carries the routine's body out. A run-time error raised in it goes to reportError under the
/// routine's name; afterwards the routine is left, its effects so far standing. An error met before the first
/// step, and one met inside a `step`, is repeated when the answer is Retry, never what had already taken
/// effect. While the trap is not armed errors pass on to the caller's trap or, past the event handler, to the
/// event loop.
class ErrorTrap {
public:
    /// before: run ahead of the report when an error is met.
    explicit ErrorTrap(const char* routine, Arm arm = Arm::always, void (*before)() = nullptr)
        : routine_{routine}, before_{before}, armed_{arm == Arm::always || g_bTrapErrors} {}

    template <class Body>
    void run(Body&& body) {
        try {
            if (detail::faultPlanned) [[unlikely]]
                begin();
            body();
        } catch (...) {
            end();
        }
    }

    /// The beginning and the end of a routine that needs no trap of its own while all goes well.
    static void begin(const char* routine);
    static void end(const char* routine);

    /// One operation of the body that is repeated as a whole when the user answers Retry: it must have no
    /// effect before it fails.
    template <class Operation>
    void step(Operation&& operation) {
        for (;;) {
            std::int16_t number = 0;
            try {
                operation();
                return;
            } catch (const RunTimeError& error) {
                number = error.number;
            } catch (const std::bad_alloc&) {
                number = errors::outOfMemory;
            }
            if (!armed_) throw RunTimeError{number};
            if (report(number) != actionRetry) throw Left{};
        }
    }

private:
    /// Meets the failure that is planned for the routine.
    void begin();
    /// Sorts the exception being handled: what belongs to the routine ends here, everything else passes on.
    void end() const;

    struct Left {};  ///< carries control from a failed step to the end of the routine

    std::int16_t report(std::int16_t number) const {
        if (before_ != nullptr) before_();
        return reportError(routine_, number);
    }

    const char* routine_;
    void (*before_)();
    bool armed_;
};

/// The ordinary use: one routine, one body. The trap itself is made only when there is something for it to
/// do, since such routines lie on the way of every run of text.
template <class Body>
void trapped(const char* routine, Body&& body) {
    try {
        if (detail::faultPlanned) [[unlikely]]
            ErrorTrap::begin(routine);
        body();
    } catch (...) {
        ErrorTrap::end(routine);
    }
}

/// The same for a routine that arms its trap only while g_bTrapErrors is on.
template <class Body>
void trappedOnRequest(const char* routine, Body&& body) {
    ErrorTrap{routine, Arm::onRequest}.run(body);
}

}  // namespace qxterm
