#include "dumps.h"
#include "platform/headless/failures.h"

namespace qxterm::scenario {

Json dumpFailures() {
    Json list = Json::array();
    for (const headless::PointInfo& point : headless::points()) {
        const headless::FailurePlan plan = headless::planOf(point.point);
        Json entry{{"name", point.name},
                   {"calls", headless::callsOf(point.point)},
                   {"failed", headless::failuresOf(point.point)}};
        if (plan.times != 0) {
            const bool always = plan.times == headless::FailurePlan::always;
            entry["after"] = plan.after;
            entry["times"] = always ? Json("always") : Json(plan.times);
        }
        list.push_back(std::move(entry));
    }
    return {{"dump", "failures"}, {"points", std::move(list)}};
}

}  // namespace qxterm::scenario
