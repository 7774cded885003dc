#include "platform/headless/clock.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/backend.h"
#include "platform/event_loop.h"
#include "platform/form.h"
#include "platform/headless/failures.h"
#include "platform/timer.h"

namespace qxterm::headless {
namespace {

struct Armed {
    Timer* timer;
    std::int64_t due;
    std::int64_t order;  ///< counts up with each arming
    bool general;        ///< tmrGen, which goes first at the same instant
};

std::int64_t virtualTime = 0;
std::int64_t armings = 0;
std::vector<Armed> armedTimers;
std::vector<Timer*> knownTimers;
/// Those that the system had no timer for; it is asked again when time passes.
std::vector<Timer*> refusedTimers;
std::vector<std::function<void()>> nextEvents;

void arm(Timer& timer) {
    std::erase_if(armedTimers, [&](const Armed& armed) { return armed.timer == &timer; });
    std::erase(refusedTimers, &timer);
    if (!timer.enabled() || timer.interval() <= 0) return;
    if (fails(Point::timerStart)) {
        refusedTimers.push_back(&timer);
        return;
    }
    armedTimers.push_back(
        {&timer, virtualTime + timer.interval(), ++armings, std::string_view{timer.name()} == "tmrGen"});
}

/// The next timer that is due at the latest at `limit`, or null.
Armed* nextDue(std::int64_t limit) {
    Armed* next = nullptr;
    const auto key = [](const Armed& armed) { return std::tuple{armed.due, !armed.general, armed.order}; };
    for (Armed& armed : armedTimers) {
        if (armed.due > limit || !armed.timer->form().loaded()) continue;
        if (next == nullptr || key(armed) < key(*next)) next = &armed;
    }
    return next;
}

void runNextEvents() {
    for (const auto& event : std::exchange(nextEvents, {})) event();
    for (Timer* timer : std::vector<Timer*>{refusedTimers}) arm(*timer);
}

}  // namespace

std::int64_t now() { return virtualTime; }

void passTime(std::int64_t milliseconds) { virtualTime += std::max<std::int64_t>(milliseconds, 0); }

void advance(std::int64_t milliseconds) {
    const std::int64_t end = virtualTime + std::max<std::int64_t>(milliseconds, 0);
    runNextEvents();
    while (!eventLoop::ending()) {
        Armed* next = nextDue(end);
        if (next == nullptr) break;
        virtualTime = std::max(virtualTime, next->due);
        next->due = virtualTime + next->timer->interval();
        next->timer->onTimer.raise();  // may arm and disarm timers: `next` is not valid behind it
    }
    virtualTime = std::max(virtualTime, end);
}

void happenNext(std::function<void()> event) { nextEvents.push_back(std::move(event)); }

void armTimers(const Form& form) {
    for (Timer* timer : knownTimers) {
        if (&timer->form() == &form) arm(*timer);
    }
}

void disarmTimers(const Form& form) {
    for (Timer* timer : knownTimers) {
        if (&timer->form() == &form) timer->setEnabled(false);
    }
}

void resetClock() {
    for (Timer* timer : std::vector<Timer*>{knownTimers}) timer->setEnabled(false);
    virtualTime = 0;
    armings = 0;
    armedTimers.clear();
    knownTimers.clear();
    refusedTimers.clear();
    nextEvents.clear();
}

}  // namespace qxterm::headless

namespace qxterm::backend {

void timerChanged(Timer& timer) {
    using headless::knownTimers;
    if (std::find(knownTimers.begin(), knownTimers.end(), &timer) == knownTimers.end())
        knownTimers.push_back(&timer);
    headless::arm(timer);
}

}  // namespace qxterm::backend
