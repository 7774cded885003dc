#pragma once

#include <cstdint>

namespace qxterm {

/// A failure that a routine's error trap can take: run-time error numbers and socket error numbers share one
/// space. Thrown by the platform's calls and by the checked arithmetic; caught by the error traps and by the
/// event loop.
struct RunTimeError {
    std::int16_t number;
};

namespace errors {
inline constexpr std::int16_t invalidProcedureCall = 5;
inline constexpr std::int16_t overflow = 6;
inline constexpr std::int16_t outOfMemory = 7;
inline constexpr std::int16_t subscriptOutOfRange = 9;
inline constexpr std::int16_t typeMismatch = 13;
inline constexpr std::int16_t cannotPerformOperation = 17;
inline constexpr std::int16_t badFileName = 52;
inline constexpr std::int16_t fileNotFound = 53;
inline constexpr std::int16_t deviceUnavailable = 68;
inline constexpr std::int16_t permissionDenied = 70;
inline constexpr std::int16_t pathFileAccess = 75;
inline constexpr std::int16_t pathNotFound = 76;
inline constexpr std::int16_t objectNotSet = 91;
}  // namespace errors

}  // namespace qxterm
