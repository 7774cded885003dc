#include "diag/error_trap.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qxterm {

bool g_bTrapErrors = false;

namespace {

struct PlannedFault {
    std::string routine;
    std::int16_t number;
};

std::vector<PlannedFault>& plannedFaults() {
    static std::vector<PlannedFault> faults;
    return faults;
}

}  // namespace

namespace detail {

bool faultPlanned = false;

void meetPlannedFault(const char* routine) {
    auto& faults = plannedFaults();
    const auto at = std::find_if(faults.begin(), faults.end(),
                                 [&](const PlannedFault& fault) { return fault.routine == routine; });
    if (at == faults.end()) return;
    const std::int16_t number = at->number;
    faults.erase(at);
    faultPlanned = !faults.empty();
    throw RunTimeError{number};
}

}  // namespace detail

void ErrorTrap::begin() {
    step([this] { detail::meetPlannedFault(routine_); });
}

void ErrorTrap::begin(const char* routine) { ErrorTrap{routine}.begin(); }

void ErrorTrap::end(const char* routine) { ErrorTrap{routine}.end(); }

void ErrorTrap::end() const {
    try {
        throw;
    } catch (const RunTimeError& error) {
        if (!armed_) throw;
        (void)report(error.number);
    } catch (const std::bad_alloc&) {
        if (!armed_) throw RunTimeError{errors::outOfMemory};
        (void)report(errors::outOfMemory);
    } catch (const Left&) {
    }
}

void setTrapErrors(bool armed) { g_bTrapErrors = armed; }

void planFault(std::string_view routine, std::int16_t number) {
    plannedFaults().push_back({std::string{routine}, number});
    detail::faultPlanned = true;
}

void clearPlannedFaults() {
    plannedFaults().clear();
    detail::faultPlanned = false;
}

}  // namespace qxterm
