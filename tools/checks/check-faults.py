#!/usr/bin/env python3
"""Every call of the system that a program makes can be made to fail (tests/windows/faults/fault_table.cpp), or is named with
its reason among those that are not tried (docs/testing/faults.md), or asks, gives back or shows, so that nothing follows from
its failure but what it would have told or shown. And every call that can be made to fail fails in a test of the window.

Usage: check-faults.py PROGRAM ...     (they name all that they call in their tables of imports)
"""

import re
import subprocess
import sys
from pathlib import Path

import house

TABLE = "tests/windows/faults/fault_table.cpp"
PAGE = "docs/testing/faults.md"
SOURCES = ("src/platform/win32", "helpers")
TESTS = "tests/windows"
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
    ExitProcess GetStdHandle SetDefaultDllDirectories htonl htons inet_pton ntohs

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


def words(folder, pattern):
    """All identifiers in the files of a folder."""
    return {word for path in Path(folder).rglob(pattern) for word in re.findall(r"\w+", path.read_text(encoding="utf-8"))}


def check(names):
    """What is wrong. names: all that is imported."""
    table = set(re.findall(r"^ *X\((\w+),", Path(TABLE).read_text(encoding="utf-8"), re.MULTILINE))
    page = set(re.findall(r"\w+", Path(PAGE).read_text(encoding="utf-8")))
    problems = [f"{name}: it cannot be made to fail, and no page says why" for name in sorted(names - table)
                if not {name, re.sub(r"[AW]$", "", name)} & (page | NOTHING_FOLLOWS)]
    return problems + [f"{name}: it can be made to fail, and no test does" for name in sorted(table - words(TESTS, "*.py"))]


def main(programs):
    names = set()
    for program in programs:
        command = ["x86_64-w64-mingw32-objdump", "-p", program]
        names |= imported(subprocess.run(command, capture_output=True, text=True, check=True).stdout)
    # What the compiler's own libraries call is theirs.
    names &= set().union(*(words(folder, "*.*") for folder in SOURCES))
    return house.report(check(names), len(names), "calls")


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
