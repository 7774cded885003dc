#pragma once

#include <cstdint>

namespace qxterm {

/// 1 while the window is being scrolled: the paint that arrives then comes from the scroll.
extern std::int16_t scrollInProgress;

/// Paints the rows of the local login prompt instead of the records and returns true; returns false while
/// there is no prompt. Filled at start-up.
extern bool (*paintLocalPrompt)();
/// True while the window shows that prompt. Filled at start-up.
extern bool (*localPromptShown)();

/// Told when the window was scrolled, and painted behind that, while drawingWatched; filled at start-up.
extern void (*windowScrolled)();

/// Repaints all 25 rows of the view and shows the cursor. Paint event, and called wherever the whole window
/// changes; scrolls still pending for the window are dropped, since every line is drawn in place.
void picterm_Paint();
/// Paint message of picterm, before it is carried out: keeps the cursor's state right.
void mbPaint();
/// Timer action: next blink phase of blinking text; the repaint follows from the event loop.
void blinkTextStep();

/// No scroll in progress, visible phase of blinking text; for start values.
void resetPaint();

/// Moves rows first..last of the window by that many rows (negative: up) at once. Used for every scroll of
/// the window.
void scrollWindow(std::int32_t first, std::int32_t last, std::int32_t by);
/// The same for the rows of the scrolling region, as scrollRect has them.
void scrollRegion(std::int32_t by);

}  // namespace qxterm
