#pragma once

#include <cstdint>

namespace qxterm {

/// -1 while the cursor's cell is inverted on the window. Written by toggleCursor and the routines below.
extern std::int16_t cursorShown;
/// True in the phase in which a blinking cursor is not seen. Flipped by the cursor-blink timer.
extern bool cursorBlinkOff;
/// Not 0 while the view is scrolled back: the cursor stays away. Written by keepCursorAway.
extern std::int16_t cursorHiddenWord;

/// Arguments of toggleCursor.
inline constexpr std::int16_t showCursor = -1;
inline constexpr std::int16_t hideCursor = 0;

/// Inverts the cursor's cell to show (-1) or hide (0) the cursor; nothing at all while drawing is suspended
/// or the cursor hidden.
void toggleCursor(std::int16_t show);
/// The window was painted over where the cursor stood.
void forgetShownCursor();
/// Called by the scrollback view, and by the reset that begins a program.
void keepCursorAway(bool away);
/// Cell of the window on which the cursor was drawn last.
[[nodiscard]] std::int32_t shownCursorColumn();
[[nodiscard]] std::int32_t shownCursorRow();

/// Starts (adds the 250 ms timer) and stops the blinking of the cursor; stopped, it is in its visible phase:
/// a cursor that was off is seen again with the next output or paint.
void startCursorBlink();
void stopCursorBlink();
/// Timer action: next blink phase of the cursor.
void blinkCursorStep();

/// Activation message of the main window: 0 deactivated, 1 and 2 activated. The blink timer exists only while
/// the window is active.
void mbResize(std::int16_t activation);

/// No cursor on the window, visible phase, not hidden.
void resetCursorView();

}  // namespace qxterm
