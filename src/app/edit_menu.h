#pragma once

#include <cstdint>

/// The Edit menu of the main window.
namespace qxterm {

/// Entries of the Edit menu.
namespace editItem {
inline constexpr std::int16_t copy = 0;
inline constexpr std::int16_t paste = 1;
inline constexpr std::int16_t clear = 2;
}  // namespace editItem

/// Copy, Paste and Clear together.
void enableAllEditItems(bool enabled);

/// The Edit menu opens: its entries are enabled as far as they can do something.
void mnuedit_Click();
/// What Copy does, when something is selected; nothing otherwise.
void copySelection();
/// Copy, Paste or Clear.
void mnueditItem_Click(std::int16_t index);

}  // namespace qxterm
