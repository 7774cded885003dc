#include "timers/timer_registry.h"

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "platform/main_form.h"
#include "platform/message_box.h"

namespace qxterm {

std::array<TimerSlot, timerSlots + 1> timerTable;
std::int16_t timerHead = 0;
constinit Timer tmrGen{frmterm, "tmrGen"};

namespace {

void doNothing() {}

TimerSlot& slotAt(std::int16_t number) { return timerTable[subscript(number, 1, timerSlots)]; }

bool hasTriple(const TimerSlot& slot, std::int16_t kind, std::int16_t action, std::int16_t period) {
    return slot.kind == kind && slot.action == action && slot.period == period;
}

}  // namespace

std::array<void (*)(), timerSlots + 1> timerActions{doNothing, doNothing, doNothing,
                                                    doNothing, doNothing, doNothing};

void clearTimers() {
    timerTable.fill(TimerSlot{});
    timerHead = 0;
}

void addTimer(std::int16_t kind, std::int16_t action, std::int16_t period) {
    trappedOnRequest("addTimer", [&] {
        for (std::int16_t number = 1; number <= timerSlots; ++number) {
            TimerSlot& slot = slotAt(number);
            if (slot.free) {
                slot = {.remaining = period,
                        .next = timerHead,
                        .action = action,
                        .kind = kind,
                        .period = period,
                        .free = false};
                timerHead = number;
                return;
            }
            if (hasTriple(slot, kind, action, period)) return;
        }
        messageBox("Out of Windows timer resources", programTitle, Buttons::ok, Icon::information);
    });
}

void delTimer(std::int16_t kind, std::int16_t action, std::int16_t period) {
    trappedOnRequest("delTimer", [&] {
        std::int16_t previous = 0;
        for (std::int16_t number = timerHead; number != 0; number = slotAt(number).next) {
            TimerSlot& slot = slotAt(number);
            if (hasTriple(slot, kind, action, period)) {
                (previous == 0 ? timerHead : slotAt(previous).next) = slot.next;
                slot.free = true;  // the slot keeps its next, so that a walk standing on it can go on
                return;
            }
            previous = number;
        }
    });
}

void tmrGen_Timer() {
    trappedOnRequest("tmrGen_Timer", [] {
        const std::int32_t elapsed = tmrGen.interval();
        for (std::int16_t number = timerHead; number != 0; number = slotAt(number).next) {
            TimerSlot& slot = slotAt(number);
            slot.remaining = toInt16(slot.remaining - elapsed);
            if (slot.remaining > 0) continue;
            timerActions[subscript(slot.action, 1, timerSlots)]();
            if (slot.kind == timerOnce) {
                delTimer(slot.kind, slot.action, slot.period);
            } else {
                slot.remaining = slot.period;
            }
        }
    });
}

}  // namespace qxterm
