#!/usr/bin/env python3
"""The modules reach the system through platform/ alone.

Only src/platform/win32/ and the win32/ folders of the helpers may include headers of the system, and no module may
ask which system it is compiled for. Of the system's calls some are made in one way only, so that no other account of the
machine can come between (docs/threats.md): programs are started by their full path and without a shell, libraries
come from the system's folder, and what can have a name that others know has none.

Usage: check-system-calls.py [FOLDER]     (default: the project)
"""

import re

import house

SYSTEM_HEADER = re.compile(r"^\s*#\s*include\s*<([^>]+\.h)>")
WINDOWS_HEADER = re.compile(r"^\s*#\s*include\s*<((?:windows|winsock2?|ws2tcpip)\.h)>", re.IGNORECASE)
HELPERS_SYSTEM = re.compile(r"helpers/[^/]*/win32/")
QUESTION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef)\b.*"
                      r"\b(_WIN32|_WIN64|WIN32|__MINGW\w*__|__CYGWIN__|__linux__|__unix__|__APPLE__)\b")
SHELLS = re.compile(r"\b(WinExec|ShellExecute\w*|LoadModule|system|_?w?popen|_w?spawn\w+|_w?exec[lv]\w*)\s*\(")
CALL = re.compile(r"\b(CreateProcess[AW]?|LoadLibrary(?:Ex)?[AW]?|CreateNamedPipe[AW]?"
                  r"|Create(?:Event|Mutex|Semaphore|WaitableTimer|JobObject|FileMapping)(?:Ex)?[AW]?)\s*\(")
NAMED_FIRST = re.compile(r"CreateEventEx|CreateMutexEx")  # the name is the second of four; of the others it is the last


def arguments(text):
    """The arguments of a call, from behind its parenthesis on."""
    depth, found = 0, [""]
    for c in text:
        if c in ")]}":
            if depth == 0:
                break
            depth -= 1
        if c in "([{":
            depth += 1
        if c == "," and depth == 0:
            found.append("")
        else:
            found[-1] += c
    return [" ".join(one.split()) for one in found]


def careless(routine, given):
    """What is wrong with a call; empty when nothing is."""
    if routine.startswith("CreateProcess"):
        return "" if given[0] != "nullptr" else "names no file: the system would look for it along the path"
    if routine.startswith("LoadLibrary"):
        return "" if "LOAD_LIBRARY_SEARCH_SYSTEM32" in given[-1] else "looks for the library outside of the system's folder"
    if routine.startswith("CreateNamedPipe"):
        return "makes a pipe that others can make first"
    name = given[1] if NAMED_FIRST.match(routine) and len(given) > 1 else given[-1]
    return "" if name == "nullptr" else "gives a name that others can use first"


def careless_calls(path, text):
    problems = []
    for match in [*SHELLS.finditer(text), *CALL.finditer(text)]:
        fault = "starts a program through a shell or a search" if match.re is SHELLS else \
            careless(match.group(1), arguments(text[match.end():]))
        if fault:
            problems.append(f"{path}:{text.count(chr(10), 0, match.start()) + 1}: {match.group(1)} {fault}")
    return problems


def check(root):
    problems = []
    paths = house.source_files(root)
    for path in paths:
        if path.startswith(("src/", "helpers/")):
            problems += careless_calls(path, "\n".join(house.without_comments(house.read_lines(path, root) or [])))
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
