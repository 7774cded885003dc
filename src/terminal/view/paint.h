#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace qxterm {

/// 1 while the window is being scrolled: the paint that arrives then comes from the scroll.
extern std::int16_t scrollInProgress;

/// Paints the rows of the local login prompt instead of the records and returns true; returns false while
/// there is no prompt. Filled by the SSH bridge.
extern bool (*paintLocalPrompt)();

/// Told of every scroll of the window while a selection is shown; else empty.
extern void (*windowScrolled)(const PixelRect& area, std::int32_t dy);
/// Told when the paint that follows such a scroll is done; empty likewise.
extern void (*scrollSettled)();

/// Repaints all 25 rows of the view and shows the cursor. Paint event, and called wherever the whole window
/// changes; scrolls still pending for the window are dropped, since every line is drawn in place.
void picterm_Paint();
/// Paint message of picterm, before it is carried out: keeps the cursor's state right.
void mbPaint();
/// Timer action: next blink phase of blinking text; the repaint follows from the event loop.
void blinkTextStep();

/// Moves the pixels of an area of the window by dy (negative: up) at once. Used for every scroll of the
/// window.
void scrollWindow(const PixelRect& area, std::int32_t dy);

}  // namespace qxterm
