#include "diag/error_trap.h"

#include <string>

namespace qxterm {

bool g_bTrapErrors = false;

namespace {

std::string plannedRoutine;
std::int16_t plannedNumber = 0;

}  // namespace

namespace detail {

bool faultPlanned = false;

void meetPlannedFault(const char* routine) {
    if (!faultPlanned || plannedRoutine != routine) return;
    faultPlanned = false;
    throw RunTimeError{plannedNumber};
}

}  // namespace detail

void planFault(std::string_view routine, std::int16_t number) {
    plannedRoutine = routine;
    plannedNumber = number;
    detail::faultPlanned = !routine.empty();
}

void clearPlannedFault() { planFault({}, 0); }

}  // namespace qxterm
