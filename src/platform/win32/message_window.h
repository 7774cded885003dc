#pragma once

#include "platform/win32/system.h"

namespace qxterm::win32 {

/// A hidden window of the one thread: what sockets, ports, look-ups and timers announce arrives here, so that
/// it is delivered by every message loop, those of menus and message boxes too. It also carries the
/// application's title.
[[nodiscard]] HWND messageWindow();

using MessageHandler = void (*)(UINT message, WPARAM wParam, LPARAM lParam);
/// Has the messages first to last delivered to the handler. Several handlers may take the same message.
void handleMessages(UINT first, UINT last, MessageHandler handler);

/// Private messages of the hidden window.
inline constexpr UINT wmScrollBars = WM_APP + 1;
inline constexpr UINT wmResolved = WM_APP + 2;
inline constexpr UINT wmSerial = WM_APP + 3;
inline constexpr UINT wmFrame = WM_APP + 4;
/// Each connection has a message of its own, so that what an earlier one has left in the queue is told apart.
inline constexpr UINT wmSocketFirst = WM_APP + 0x100;
inline constexpr UINT wmSocketLast = WM_APP + 0x10FF;

/// Numbers of the hidden window's timers, for WM_TIMER: the Timer objects count upward from the last of
/// these.
inline constexpr UINT_PTR timerCarrier = 1;
inline constexpr UINT_PTR timerBreak = 2;
inline constexpr UINT_PTR timerFrames = 3;
inline constexpr UINT_PTR timerNews = 4;
inline constexpr UINT_PTR timerReceiveFirst = 0x100;
inline constexpr UINT_PTR timerReceiveLast = 0x1FF;
inline constexpr UINT_PTR timerObjects = 0x1000;

}  // namespace qxterm::win32
