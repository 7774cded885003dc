#pragma once

#include <cstdint>
#include <string>

namespace qxterm {

/// Result of reportError: repeat the failed operation.
inline constexpr std::int16_t actionRetry = 2;
/// Result of reportError: leave the routine.
inline constexpr std::int16_t actionLeave = 1;
/// Result of reportError for a local address in use: left to the caller.
inline constexpr std::int16_t actionAddressInUse = 3;

/// TRUE from start-up on: the message for an unexpected error names the routine and the error. Written by
/// setVerboseErrors.
extern bool g_bVerboseErrors;
void setVerboseErrors(bool verbose);
/// Set by error 10035 (would block).
extern bool g_bWouldBlock;
/// How many times error 10035 was reported; stays at 32767.
extern std::int16_t g_iWouldBlockCount;

/// What the reporter asks of the floors above; filled at start-up.
struct ErrorHooks {
    void (*dropConnection)() = [] {};                             ///< after a lost connection was told
    std::string (*currentHost)() = [] { return std::string{}; };  ///< the current profile's host
    void (*closeMainWindow)() = [] {};                            ///< after error 17
};
extern ErrorHooks errorHooks;

/// No error reported yet, short messages; for start values.
void resetErrorReports();

/// Tells the user of a failure and says what the routine shall do: actionRetry, actionLeave,
/// actionAddressInUse. Called by the error traps and, for an event handler that a failure ended, by the event
/// loop. routine: the name to report under; number: run-time or socket error.
[[nodiscard]] std::int16_t reportError(const char* routine, std::int16_t number);

/// The run-time description of an error number; socket errors have the system's own words.
[[nodiscard]] std::string errorDescription(std::int16_t number);

}  // namespace qxterm
