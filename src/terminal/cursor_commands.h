#pragma once

#include <cstdint>
#include <span>

/// Cursor motion, the scrolling region and the status row: commands of the control sequence whose parameters
/// are in escParams. Each stores and draws what is pending first.
namespace qxterm {

void cursorPosition(std::span<const std::int16_t> parameters);  ///< H, f
void setRegion();                                               ///< r
void cursorUp();                                                ///< A
void cursorDown();                                              ///< B
void cursorForward();                                           ///< C
void cursorBack();                                              ///< D
void toStatusRow();                                             ///< x
void backTab();  ///< Z; error 6 when the count times 8 leaves 16 bits

/// Column rounded down to a multiple of 8, towards minus infinity.
[[nodiscard]] constexpr int tabFloor(int column) { return column & ~7; }

}  // namespace qxterm
