#include "platform/screen_reading.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace qxterm {
namespace {

/// Rows that a key's echo changes: its own, and the one that the cursor goes to.
constexpr std::size_t rowsOfTyping = 2;

}  // namespace

std::int64_t ChangePacer::waitFrom(std::int64_t now) const {
    return std::max<std::int64_t>(lookedAt_ + pause_ - now, 0);
}

ScreenChanges ChangePacer::look(ScreenReading reading, std::int64_t now) {
    ScreenChanges changes;
    if (last_) {
        for (std::size_t row = 0; row < reading.rows.size(); ++row) {
            changes.rows[row] = reading.rows[row] != last_->rows[row];
        }
        changes.selection = reading.selected != last_->selected;
    }
    last_ = std::move(reading);
    lookedAt_ = now;
    pause_ = changes.rows.count() <= rowsOfTyping ? shortPause : longPause;
    return changes;
}

}  // namespace qxterm
