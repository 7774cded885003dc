#include "dumps.h"
#include "timers/timer_registry.h"

namespace qxterm::scenario {

Json dumpTimers() {
    Json slots = Json::array();
    for (std::size_t number = 1; number <= static_cast<std::size_t>(timerSlots); ++number) {
        const TimerSlot& slot = timerTable[number];
        slots.push_back({{"free", slot.free},
                         {"kind", slot.kind},
                         {"action", slot.action},
                         {"period", slot.period},
                         {"remaining", slot.remaining},
                         {"next", slot.next}});
    }
    return {{"dump", "timers"}, {"head", timerHead}, {"slots", slots}};
}

}  // namespace qxterm::scenario
