#include <algorithm>
#include <vector>

#include "platform/backend.h"
#include "platform/win32/message_window.h"
#include "platform/win32/timers.h"

namespace qxterm {
namespace win32 {
namespace {

struct Running {
    Timer* timer;
    /// New with each start: a tick of an earlier period that still waits in the queue is none.
    UINT_PTR number;
    bool ticks;  ///< false: the system had no timer left, and is asked again
};

bool anyRefused = false;

std::vector<Running>& running() {
    static std::vector<Running> all;
    return all;
}

void tick(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    const auto at = std::find_if(running().begin(), running().end(),
                                 [&](const Running& one) { return one.number == wParam; });
    if (at == running().end()) return;
    Timer& timer = *at->timer;
    if (timer.form().loaded()) timer.onTimer.raise();
}

void stop(const Timer& timer) {
    const auto at = std::find_if(running().begin(), running().end(),
                                 [&](const Running& one) { return one.timer == &timer; });
    if (at == running().end()) return;
    KillTimer(messageWindow(), at->number);
    running().erase(at);
}

[[nodiscard]] bool ask(const Running& one) {
    return SetTimer(messageWindow(), one.number, static_cast<UINT>(one.timer->interval()), nullptr) != 0;
}

void start(Timer& timer) {
    static UINT_PTR next = timerObjects;
    static const bool subscribed = (handleMessages(WM_TIMER, WM_TIMER, tick), true);
    (void)subscribed;
    ++next;
    running().push_back({&timer, next, false});
    running().back().ticks = ask(running().back());
    if (!running().back().ticks) anyRefused = true;
}

}  // namespace

void startRefusedTimers() {
    if (!anyRefused) return;
    anyRefused = false;
    for (Running& one : running()) {
        if (!one.ticks) one.ticks = ask(one);
        if (!one.ticks) anyRefused = true;
    }
}

void disableTimers(const Form& form) {
    std::vector<Timer*> its;
    for (const Running& one : running()) {
        if (&one.timer->form() == &form) its.push_back(one.timer);
    }
    for (Timer* timer : its) timer->setEnabled(false);
}

}  // namespace win32

void backend::timerChanged(Timer& timer) {
    win32::stop(timer);
    if (timer.enabled() && timer.interval() > 0) win32::start(timer);
}

}  // namespace qxterm
