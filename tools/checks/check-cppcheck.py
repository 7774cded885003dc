#!/usr/bin/env python3
"""cppcheck finds nothing in src/, helpers/ and tools/. It belongs to the packages of `./test`.

Usage: check-cppcheck.py [FOLDER]     (default: the project)
"""

import os
import shutil
import subprocess
import sys

import house

FOLDERS = ("src", "helpers", "tools")
INCLUDES = ("src", "helpers", "tools", "tools/qxterm-scenario")
# What it takes for a fault and is none.
SUPPRESSED = (
    # A lambda that captures by [=] holds copies of its own.
    "returnDanglingLifetime:tools/qxterm-scenario/*",
    # The number's text is a part of a longer one.
    "ignoredReturnValue:helpers/zpt_ssh/client_arguments.cpp",
    # Pointers that a template fills one by one: it takes them for one and the same.
    "knownConditionTrueFalse:src/platform/win32/accessibility_libraries.h",
)


def check(root):
    folders = [folder for folder in FOLDERS if os.path.isdir(os.path.join(root, folder))]
    checked = sum(path.startswith(tuple(folder + "/" for folder in folders)) and path.endswith(".cpp")
                  for path in house.source_files(root))
    if not checked:
        return [], 0
    notes = os.path.join(root, "build", "cppcheck")
    os.makedirs(notes, exist_ok=True)
    result = subprocess.run(
        ["cppcheck", "--std=c++20", "--language=c++", "--enable=warning,performance,portability", "--quiet",
         "--error-exitcode=1", "--template={file}:{line}: {message} [{id}]", f"-j{os.cpu_count() or 1}",
         f"--cppcheck-build-dir={notes}", *(f"-I{folder}" for folder in INCLUDES),
         *(f"--suppress={name}" for name in SUPPRESSED), *folders],
        cwd=root, capture_output=True, text=True)
    problems = sorted({line for line in (result.stdout + result.stderr).splitlines() if line.strip()})
    if result.returncode != 0 and not problems:
        problems = [f"cppcheck ended with {result.returncode}"]
    return problems, checked


if __name__ == "__main__":
    if not shutil.which("cppcheck"):
        print("cppcheck is not installed: tools/setup/install.sh checks")
        sys.exit(1)
    house.main(check)
