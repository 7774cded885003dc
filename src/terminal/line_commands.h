#pragma once

#include <cstdint>

namespace qxterm {

/// Inserts blank lines at the cursor's row; nothing while the cursor stands outside the region. Inserting the
/// whole rest of the region changes no line.
void insertLines(std::int16_t count);
/// Deletes lines at the cursor's row, at most one less than the rest of the region; nothing outside the
/// region.
void deleteLines(std::int16_t count);

}  // namespace qxterm
