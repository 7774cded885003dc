#include "platform/timer.h"

#include "platform/backend.h"

namespace qxterm {

void Timer::setInterval(std::int32_t milliseconds) {
    interval_ = milliseconds;
    restart();
}

void Timer::setEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    restart();
}

void Timer::restart() { backend::timerChanged(*this); }

}  // namespace qxterm
