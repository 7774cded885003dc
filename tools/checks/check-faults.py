#!/usr/bin/env python3
"""Every call of the system that the program makes can be made to fail (tests/windows/faults/fault_table.cpp), or is named with
its reason among those that are not tried (docs/testing/faults.md), or asks, gives back or shows, so that nothing follows from
its failure but what it would have told or shown.

Usage: check-faults.py PROGRAM     (qxterm-probe.exe: it names all that it calls in its table of imports)
"""

import re
import subprocess
import sys
from pathlib import Path

import house

TABLE = "tests/windows/faults/fault_table.cpp"
PAGE = "docs/testing/faults.md"
SOURCES = ("src/platform/win32", "helpers")
# Without the A or W at the end.
NOTHING_FOLLOWS = set("""
    CountClipboardFormats GetActiveWindow GetAncestor GetClientRect GetCommandLine GetCurrentThreadId GetDeviceCaps GetDlgItem
    GetEnvironmentVariable GetExitCodeProcess GetFocus GetKeyState GetLastActivePopup GetLastError GetMenu GetMenuItemCount
    GetModuleHandle GetMonitorInfo GetNextDlgTabItem GetObject GetParent GetQueueStatus GetScrollInfo GetStockObject GetSysColor
    GetSysColorBrush GetSystemMetrics GetTickCount64 GetUpdateRect GetWindow GetWindowLongPtr GetWindowPlacement GetWindowRect
    GetWindowText GetWindowTextLength GlobalSize IsChild IsClipboardFormatAvailable IsIconic IsWinEventHookInstalled IsWindow
    IsWindowEnabled IsWindowVisible MonitorFromRect QueryPerformanceCounter QueryPerformanceFrequency SystemParametersInfo
    WSAGetLastError

    CancelIoEx CloseClipboard CloseHandle DeleteDC DeleteObject DestroyCaret DestroyMenu DestroyWindow EndPaint GlobalFree GlobalUnlock
    KillTimer ReleaseCapture ReleaseDC ReleaseSRWLockExclusive RemoveFontResourceEx RemoveWindowSubclass ResetEvent WSACleanup
    closesocket freeaddrinfo

    AcquireSRWLockExclusive AdjustWindowRectEx DefSubclassProc DefWindowProc DispatchMessage EnumThreadWindows GdiFlush
    HeapSetInformation InflateRect InitCommonControlsEx IsDialogMessage LoadCursor LoadIcon MapWindowPoints MulDiv MultiByteToWideChar
    NotifyWinEvent OffsetRect OutputDebugString PtInRect SetDllDirectory SetErrorMode Sleep TranslateMessage WideCharToMultiByte
    inet_pton ntohs

    CreateCaret CreateCompatibleBitmap EnableWindow InvalidateRect RedrawWindow RoundRect SetActiveWindow SetBkColor SetBkMode
    SetCapture SetCaretPos SetDCBrushColor SetForegroundWindow SetTextAlign SetTextColor SetWindowLongPtr ShowCaret UpdateWindow

    GetMessage MsgWaitForMultipleObjectsEx PeekMessage WaitForMultipleObjects WaitForSingleObject
""".split())


def imported(listing):
    """The functions in a table of imports, but for those of the C library."""
    names, library = set(), ""
    for line in listing.splitlines():
        if "DLL Name:" in line:
            library = line.split(":", 1)[1].strip().lower()
        elif (match := re.match(r"\s+[0-9a-f]+\s+(?:<none>|\d+)\s+([A-Za-z_]\w+)\s*$", line)) and library != "msvcrt.dll":
            names.add(match[1])
    return names


def main(program):
    listing = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", program], capture_output=True, text=True, check=True).stdout
    table = set(re.findall(r"\bX\((\w+),", Path(TABLE).read_text(encoding="utf-8")))
    page = set(re.findall(r"\w+", Path(PAGE).read_text(encoding="utf-8")))
    # What the compiler's own libraries call is theirs.
    called = set()
    for folder in SOURCES:
        for path in Path(folder).rglob("*.*"):
            called |= set(re.findall(r"\w+", path.read_text(encoding="utf-8")))
    names = {name for name in imported(listing) & called if name not in table}
    problems = [f"{name}: it cannot be made to fail, and no page says why" for name in sorted(names)
                if not {name, re.sub(r"[AW]$", "", name)} & (page | NOTHING_FOLLOWS)]
    return house.report(problems, len(imported(listing) & called), "calls")


sys.exit(main(sys.argv[1]))
