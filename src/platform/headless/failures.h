#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string_view>

/// Planned failures of the system: each call that can fail on Windows is a point here, which a test or a
/// script can make fail. What a point's failure does is what the call's header promises for it.
namespace qxterm::headless {

enum class Point : std::uint8_t {
    clipboardClear,
    clipboardRead,
    clipboardSet,
    helpShow,
    iniRead,
    iniWrite,
    languageRead,
    boxShow,
    pictureLoad,
    pictureMeasure,
    portsTcp,
    portsUdp,
    processPipe,
    processReady,
    processStart,
    processTerminate,
    serialBreak,
    serialCarrier,
    serialOpen,
    serialRead,
    serialSettings,
    serialWrite,
    socketConnect,
    socketSend,
    socketText,
    timerStart,
    traceWrite,
    windowCreate,
};

struct PointInfo {
    Point point;
    std::string_view name;    ///< two words, as "clipboard.set"
    std::int16_t error;       ///< raised when the plan names none; 0: the call raises none, its result tells
    std::string_view effect;  ///< what the program sees
};

/// All points, in the order of their numbers.
[[nodiscard]] std::span<const PointInfo> points();
/// The point with this name, or null.
[[nodiscard]] const PointInfo* pointNamed(std::string_view name);

struct FailurePlan {
    static constexpr std::uint32_t always = std::numeric_limits<std::uint32_t>::max();

    std::uint32_t after = 0;  ///< so many calls succeed first
    std::uint32_t times = 1;  ///< so many fail then
    std::int16_t error = 0;   ///< 0: the point's own. Without effect where the point raises none
};

/// Plans failures of a point, in the place of what was planned for it before. A plan lasts until its calls
/// have failed, beyond the program's end; reset() forgets it.
void planFailure(Point point, const FailurePlan& plan);
/// Forgets all plans and counts.
void clearFailures();

/// Calls of the point since the counts were cleared, failed ones included, and the failed ones.
[[nodiscard]] std::uint32_t callsOf(Point point);
[[nodiscard]] std::uint32_t failuresOf(Point point);
/// What is still planned for a point; `times` is 0 without a plan.
[[nodiscard]] FailurePlan planOf(Point point);

// --- for the platform ------------------------------------------------------------------------------------------
/// One call of the point: the error number that it fails with, or nothing. A failure is recorded as "failed".
[[nodiscard]] std::optional<std::int16_t> failure(Point point);
/// The same for a point without an error number.
[[nodiscard]] bool fails(Point point);
/// The same for a point that raises its error.
void raiseIfPlanned(Point point);

}  // namespace qxterm::headless
