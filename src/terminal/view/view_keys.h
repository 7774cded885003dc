#pragma once

#include <cstdint>
#include <optional>
#include <utility>

namespace qxterm {

/// A key that sends nothing to the host, with its shift mask: Page Up, Page Down, Home and End move the view
/// (Shift) or the mark (Control by a cell, Alt by more; with Shift besides the marking grows), Alt+Insert
/// takes the marking away. Nothing for any other key. Reports as "viewKey".
void viewKey(std::int16_t code, std::int16_t shift);

/// Column and virtual line number of the mark while the marking that stands was made by keys.
[[nodiscard]] std::optional<std::pair<std::int32_t, std::int32_t>> keyboardMark();
/// No marking was made by keys; for start values.
void resetViewKeys();

}  // namespace qxterm
