#include "faults.h"

#include <cstdint>

#include "faults/fault_table.h"

namespace qxterm::probe {

void planFaults(const Json& plans) {
    faults::forgetPlans();
    for (const auto& [name, counts] : plans.items())
        faults::plan(name, counts.at(0).get<std::uint32_t>(), counts.at(1).get<std::uint32_t>());
}

Json faults() {
    Json all = Json::object();
    for (const faults::Counts& one : faults::counted()) all[one.name] = Json::array({one.calls, one.failed});
    return all;
}

}  // namespace qxterm::probe
