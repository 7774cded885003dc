#pragma once

#include <array>
#include <cstdint>

#include "platform/timer.h"

namespace qxterm {

/// What a timer does when it falls due; the actions themselves are filled in at start-up by the modules that
/// own them.
namespace timerAction {
inline constexpr std::int16_t endBreak = 1;
inline constexpr std::int16_t blinkCursor = 2;
inline constexpr std::int16_t blinkText = 3;
inline constexpr std::int16_t dial = 4;
inline constexpr std::int16_t pollSerial = 5;
}  // namespace timerAction

/// Values of `kind`.
inline constexpr std::int16_t timerOnce = 1;
inline constexpr std::int16_t timerRepeated = 2;

/// One slot of the registry.
struct TimerSlot {
    std::int16_t remaining = 0;  ///< milliseconds until the action runs
    std::int16_t next = 0;       ///< next active slot, 0 at the end
    std::int16_t action = 0;     ///< 1 to 5
    std::int16_t kind = 0;       ///< 1 runs once, anything else repeats
    std::int16_t period = 0;     ///< milliseconds
    bool free = true;
};

inline constexpr std::int16_t timerSlots = 5;

/// Slots 1 to 5; entry 0 is not used. Written by the registry only.
extern std::array<TimerSlot, timerSlots + 1> timerTable;
/// First active slot, 0 when there is none.
extern std::int16_t timerHead;
/// Ticks every 250 ms from the main window's load to its closing.
extern Timer tmrGen;
/// The actions by number; entry 0 is not used. Filled at start-up.
extern std::array<void (*)(), timerSlots + 1> timerActions;

/// Registers a timer at the front of the active list. A timer with the same triple in a slot before the first
/// free one makes it return without change. With no free slot a message box tells so.
void addTimer(std::int16_t kind, std::int16_t action, std::int16_t period);
/// Removes the first active timer with the triple; nothing when there is none.
void delTimer(std::int16_t kind, std::int16_t action, std::int16_t period);
/// One tick: counts the active timers down by tmrGen's interval and runs those that fall due, most recently
/// added first. Error 6 when a count leaves 16 bits.
void tmrGen_Timer();
/// Every slot free, no active timer.
void clearTimers();

}  // namespace qxterm
