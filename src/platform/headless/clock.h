#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace qxterm {
class Form;
}

namespace qxterm::headless {

/// Virtual milliseconds since the last reset.
[[nodiscard]] std::int64_t now();

/// Lets milliseconds pass (0 or more) and fires the timers that fall due up to and including the last of
/// them, in the order of their due times, at the same instant tmrGen first, then in the order in which they
/// were armed. Timers that a sleep made overdue fire once, at the start. Stops early when the program ends.
void advance(std::int64_t milliseconds);

/// Lets milliseconds pass without firing anything.
void passTime(std::int64_t milliseconds);

/// Something that the system does by itself: it happens when time passes next, before any timer, also when no
/// time passes at all.
void happenNext(std::function<void()> event);

/// The timers of a form that has just been loaded start their periods; those of one that was unloaded are
/// disabled.
void armTimers(const Form& form);
void disarmTimers(const Form& form);

/// Timers that run, or wait for the system to have one for them.
[[nodiscard]] std::size_t runningTimers();

/// Time 0, no timer armed, nothing about to happen.
void resetClock();

}  // namespace qxterm::headless
