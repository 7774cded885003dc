#!/usr/bin/env python3
"""The modules reach the system through platform/ alone.

Only src/platform/win32/ and the win32/ folders of the helpers may include headers of the system, and no module may
ask which system it is compiled for.

Usage: check-system-calls.py [FOLDER]     (default: the project)
"""

import re

import house

SYSTEM_HEADER = re.compile(r"^\s*#\s*include\s*<([^>]+\.h)>")
WINDOWS_HEADER = re.compile(r"^\s*#\s*include\s*<((?:windows|winsock2?|ws2tcpip)\.h)>", re.IGNORECASE)
HELPERS_SYSTEM = re.compile(r"helpers/[^/]*/win32/")
QUESTION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef)\b.*"
                      r"\b(_WIN32|_WIN64|WIN32|__MINGW\w*__|__CYGWIN__|__linux__|__unix__|__APPLE__)\b")


def check(root):
    problems = []
    paths = house.source_files(root)
    for path in paths:
        if path.startswith(("src/platform/win32/", "tests/windows/")) or HELPERS_SYSTEM.match(path):
            continue
        module = path.startswith(("src/", "helpers/"))
        for n, line in enumerate(house.without_comments(house.read_lines(path, root) or []), 1):
            header = (SYSTEM_HEADER if module else WINDOWS_HEADER).match(line)
            if header:
                problems.append(f"{path}:{n}: includes <{header.group(1)}>; the system is reached through "
                                "src/platform/, and only win32/ folders include its headers")
            question = QUESTION.match(line)
            if module and question:
                problems.append(f"{path}:{n}: asks for {question.group(1)}; what differs between systems belongs "
                                "into a folder of src/platform/")
    return problems, len(paths)


if __name__ == "__main__":
    house.main(check)
