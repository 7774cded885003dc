"""The checks find what they are there to find, and nothing else."""

import contextlib
import importlib.util
import io
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)


def load(path):
    """A script as a module; its name need not be an identifier."""
    name = os.path.splitext(os.path.basename(path))[0].replace("-", "_")
    found = importlib.util.spec_from_file_location(name, path)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


house = load(os.path.join(HERE, "house.py"))
includes = load(os.path.join(HERE, "check-includes.py"))
system_calls = load(os.path.join(HERE, "check-system-calls.py"))
words = load(os.path.join(HERE, "check-words.py"))
sequences = load(os.path.join(HERE, "check-sequences.py"))
version = load(os.path.join(HERE, "check-version.py"))
code_map = load(os.path.join(HERE, "check-code-map.py"))
changes = load(os.path.join(HERE, "check-changes.py"))
links = load(os.path.join(HERE, "check-links.py"))
faults = load(os.path.join(HERE, "check-faults.py"))
pages = load(os.path.join(HERE, "check-help.py"))
examples = load(os.path.join(HERE, "check-examples.py"))
clang_tidy = load(os.path.join(HERE, "check-clang-tidy.py"))
cppcheck = load(os.path.join(HERE, "check-cppcheck.py"))
scenarios = load(os.path.join(HERE, "run-scenario.py"))
scenario_file = load(os.path.join(HERE, "scenario_file.py"))
manual = load(os.path.join(HERE, "../make-help/manual.py"))
ini = load(os.path.join(HERE, "../setup/ini.py"))

FLOORS = """
1 src/ground/**
2 src/middle/**
1 src/middle/{low,lower}*
3 src/top/**
0 helpers/**
only helpers/** by helpers/**
only helpers/common/* by helpers/** src/middle/**
"""


class SmallTree(unittest.TestCase):
    """A project of a few files in a folder of its own."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = os.path.realpath(self.folder.name)

    def write(self, path, text):
        path = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


class House(SmallTree):
    def reported(self, problems, checked):
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            status = house.report(problems, checked)
        return status, said.getvalue()

    def test_report(self):
        self.assertEqual(self.reported([], 3), (0, "3 files in order\n"))
        self.assertEqual(self.reported(["a.h:1: bad"], 3), (1, "a.h:1: bad\n1 found in 3 files\n"))

    def test_a_check_that_looked_at_nothing_fails(self):
        self.assertEqual(self.reported([], 0), (1, "there are no files to look at\n1 found in 0 files\n"))

    def test_layout_cannot_be_checked_without_clang_format(self):
        self.write("src/a.cpp", "int a;\n")
        result = subprocess.run([sys.executable, os.path.join(HERE, "check-format.py"), self.root],
                                env={"PATH": self.root}, capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stdout),
                         (1, "clang-format is not installed: tools/setup/install.sh checks\n"))


class StaticAnalysis(SmallTree):
    CLEAN = "int twice(int n) { return 2 * n; }\n"
    NULL = "\n\nint first(const int* p) {\n    if (p == nullptr) return *p;\n    return 1;\n}\n"

    def setUp(self):
        super().setUp()
        shutil.copy(os.path.join(HERE, "../../.clang-tidy"), self.root)

    def found(self):
        return sorted({problem.split(": ")[0] for problem in clang_tidy.check(self.root, 1)[0]})

    def test_finding_in_a_joined_file_is_told_at_its_own_line(self):
        self.write("src/a.cpp", self.CLEAN)
        self.write("src/b.cpp", self.NULL)
        self.assertEqual(self.found(), ["src/b.cpp:4"])
        self.assertEqual([line.split(":")[:2] for line in cppcheck.check(self.root)[0]], [["src/b.cpp", "4"]])

    def test_finding_in_a_header(self):
        self.write("src/a.h", self.CLEAN + "\nint first(int* p) { return *p; }\n")
        self.write("src/a.cpp", '#include "a.h"\n')
        self.assertEqual(self.found(), ["src/a.h:1", "src/a.h:3"])

    def test_what_does_not_compile_together_is_looked_at_alone(self):
        self.write("src/a.cpp", "struct One {};\n")
        self.write("src/b.cpp", "struct One { int n; };\n" + self.NULL)
        self.assertEqual(self.found(), ["src/b.cpp:5"])

    def test_unit_that_breaks_in_a_header_is_halved(self):
        unit = clang_tidy.Unit(self.root, [], False)
        unit.paths = ["a", "b", "c"]
        with unittest.mock.patch.object(clang_tidy, "Unit", lambda root, paths, windows: paths):
            self.assertEqual(unit.apart([""]), [["a"], ["b", "c"]])
            self.assertEqual(unit.apart(["b:7", ""]), [["a", "c"], ["b"]])
            self.assertEqual(unit.apart(["a:1", "b:7", "c:8"]), [["a"], ["b"], ["c"]])

    def test_file_that_does_not_compile(self):
        self.write("src/a.cpp", "int twice(int n) { return 2 * m; }\n")
        self.assertEqual(self.found(), ["src/a.cpp:1"])

    def test_names_that_two_files_keep_for_themselves_part_them(self):
        own = ["namespace {", "void start() {}", "}  // namespace"]
        files = {"a": own, "b": own, "c": ["void start();"], "d": ["namespace {", "int other() {", "}  // namespace"]}
        self.assertEqual(clang_tidy.joined(files, set()), [["a", "c", "d"], ["b"]])
        self.assertEqual(clang_tidy.joined(files, {"other"}), [["a", "c"], ["b"], ["d"]])

    def test_clean_unit_is_looked_at_again_after_a_change_only(self):
        self.write("src/a.h", "inline " + self.CLEAN)
        self.write("src/a.cpp", '#include "a.h"\n')
        self.assertEqual(self.found(), [])
        with unittest.mock.patch.object(clang_tidy.Unit, "place", return_value="met"):
            self.assertEqual(self.found(), [])
            self.write("src/a.h", "inline int first(int* p) { return *p; }\n")
            self.assertEqual(self.found(), ["met"])


class Sequences(SmallTree):
    TABLES = """
constexpr std::array controls{
    Row{7, verb<ring>},  // BEL
};
constexpr std::array escapeSequences{
    Row{'#', verb<fill>},
};
constexpr std::array controlSequences{
    Row{'A', verb<up>}, Row{'\\'', verb<odd>},
};
"""
    INDEX = ["| `7` | bell | `one` |", "| `ESC #` | fills | `one` |", "| `ESC [ A` | up | `one` |",
             "| `ESC [ '` | odd | `one` |"]

    def problems(self, entries, tables=TABLES):
        self.write("src/terminal/interpreter/sequence_tables.cpp", tables)
        self.write("src/terminal/commands/one.h", "void ring();\nvoid fill();\nvoid up();\nvoid odd();\n")
        lines = ["# Page", "| `ESC [ Q` | outside of the index | `one` |", "## Index", *entries, "## More"]
        self.write("docs/control-sequences.md", "\n".join(lines) + "\n")
        return sequences.check(self.root)[0]

    def test_equal_sets_are_in_order(self):
        self.assertEqual(self.problems(self.INDEX), [])

    def test_entry_that_the_index_lacks(self):
        self.assertEqual(self.problems(self.INDEX[1:]),
                         ["docs/control-sequences.md:1: the index lacks 7, which the tables have"])

    def test_entry_that_the_tables_lack(self):
        self.assertEqual(self.problems([*self.INDEX, "| `ESC [ Z` | new | `one` |"]),
                         ["docs/control-sequences.md:8: the tables have no ESC [ Z"])

    def test_file_that_is_not_there_or_lacks_the_verb(self):
        entries = [self.INDEX[0].replace("one", "two"), *self.INDEX[1:]]
        self.assertEqual(self.problems(entries), ["docs/control-sequences.md:4: there is no src/terminal/commands/two.h"])
        tables = self.TABLES.replace("<up>", "<down>")
        self.assertEqual(self.problems(self.INDEX, tables),
                         ["docs/control-sequences.md:6: one.h does not declare down, the verb of ESC [ A"])

    def test_tables_that_are_not_found_are_an_error(self):
        self.assertIn("src/terminal/interpreter/sequence_tables.cpp:1: no table was found", self.problems([], "int x;\n"))


class Version(SmallTree):
    GOOD = {"CMakeLists.txt": "project(qxterm VERSION 1.2.3 LANGUAGES CXX)\n",
            "resources/a.rc": 'FILEVERSION QXTERM_VERSION_NUMBERS\nVALUE "FileVersion", QXTERM_VERSION_TEXT\n',
            "resources/a.manifest.in": '<assemblyIdentity name="Zentora.qxterm" version="@QXTERM_VERSION_TEXT@"/>\n'
                                       "<description>@QXTERM_TITLE@</description>\n",
            "resources/help/welcome.htm": "<p>qxterm 1.2.3; About says Version 9.NC.06</p>\n",
            "CHANGELOG.md": "# Changes\n\n## Unreleased\n\n- more\n\n## 1.2.2\n",
            "src/platform/program_title.h": '#define QXTERM_PROGRAM_TITLE "Title"\n',
            "src/app/dialogs/splash.cpp": 'x(formatMsg("Version %1.%2.%3.%4", "19", "2", "NC", "06"));\n'}

    def problems(self, **changed):
        """changed: what another text of a file is; the file's name without folder and ending."""
        for path, text in self.GOOD.items():
            self.write(path, changed.get(os.path.basename(path).split(".")[0], text))
        return version.check(self.root)[0]

    def test_agreement_is_in_order(self):
        self.assertEqual(self.problems(), [])
        self.assertEqual(self.problems(CHANGELOG="## 1.2.3\n\n## 1.2.2\n"), [])
        self.assertEqual(self.problems(CHANGELOG="## Unreleased\n\n## 1.2.3 - a date\n\n- all\n"), [])

    def test_resource_with_a_version_of_its_own(self):
        self.assertIn("resources/a.rc:1: has a version of its own; the build puts it in",
                      self.problems(a="FILEVERSION 1, 2, 3, 0\n"))
        self.assertEqual(len(self.problems(a='<x name="Zentora.qxterm" version="1.2.3.0"/>\n')), 2)
        self.assertEqual(len(self.problems(a="<description>Title</description>\n")), 2)

    def test_help_of_another_version(self):
        self.assertEqual(self.problems(welcome="<p>qxterm 1.2.2</p>"),
                         ["resources/help/welcome.htm:1: names the versions ['1.2.2']; it is to say qxterm 1.2.3, once"])

    def test_release_that_is_forgotten_or_too_early(self):
        self.assertEqual(self.problems(CHANGELOG="## 1.2.2\n"),
                         ["CHANGELOG.md:1: the newest release is 1.2.2, the version in CMakeLists.txt 1.2.3"])
        self.assertEqual(len(self.problems(CHANGELOG="## Unreleased\n- more\n## 1.2.3\n")), 1)
        self.assertEqual(len(self.problems(CHANGELOG="text\n")), 1)

    def test_about_that_is_quoted_wrongly(self):
        self.assertEqual(self.problems(CHANGELOG="## 1.2.3\nVersion 19.2.NC.07\n"),
                         ["CHANGELOG.md:1: quotes About as Version 19.2.NC.07; it says Version 19.2.NC.06"])

    def test_programs_and_packages_are_looked_at(self):
        self.problems()
        os.makedirs(os.path.join(self.root, "build"))
        for name in version.PROGRAMS:
            data = version.version_resource.SIGNATURE + bytes(4) + bytes(16) + "1.2.3.0".encode("utf-16-le")
            data = version.version_resource.with_version(data, "1.2.3")
            if name == "qxterm.exe":
                data += b'name="Zentora.qxterm" version="1.2.3.0"<description>Title</description>'
            with open(os.path.join(self.root, "build", name), "wb") as file:
                file.write(data)
        build = os.path.join(self.root, "build")
        self.assertEqual(version.check(self.root, build)[0], [])
        with open(os.path.join(build, "zpt_ssh.exe"), "r+b") as file:
            older = version.version_resource.with_version(file.read(), "1.2.2")
            file.seek(0)
            file.write(older)
        self.assertEqual([problem.split(": ")[1] for problem in version.check(self.root, build)[0]],
                         ["its version resource says 1.2.2.0, not 1.2.3.0"])


class Includes(SmallTree):
    def setUp(self):
        super().setUp()
        self.write("tools/checks/floors.txt", FLOORS)
        self.write("src/ground/a.h", "#pragma once\n")

    def problems(self):
        return includes.check(self.root)[0]

    def test_downward_and_level_includes_are_in_order(self):
        self.write("src/ground/b.h", '#include "ground/a.h"\n')
        self.write("src/top/c.cpp", '#include <vector>\n\n#include "ground/a.h"\n#include "ground/b.h"\n')
        self.assertEqual(includes.check(self.root), ([], 3))

    def test_upward_include_is_named_with_its_line(self):
        self.write("src/top/c.h", "\n")
        self.write("src/middle/d.cpp", '\n\n#include "top/c.h"\n')
        self.assertEqual(self.problems(), ["src/middle/d.cpp:3: includes src/top/c.h, which stands on floor 3, "
                                           "above floor 2 of this file"])

    def test_the_last_fitting_line_decides(self):
        self.write("src/middle/lower.h", '#include "middle/d.h"\n')
        self.write("src/middle/d.h", "\n")
        self.assertEqual(self.problems(), ["src/middle/lower.h:1: includes src/middle/d.h, which stands on floor "
                                           "2, above floor 1 of this file"])

    def test_circle_is_found_once_over_several_files(self):
        self.write("src/ground/x.h", '#include "ground/y.h"\n')
        self.write("src/ground/y.h", '#pragma once\n#include "ground/z.h"\n')
        self.write("src/ground/z.h", '#include "ground/x.h"\n')
        self.assertEqual(self.problems(), ["src/ground/x.h:1: includes run in a circle: src/ground/x.h -> "
                                           "src/ground/y.h -> src/ground/z.h -> src/ground/x.h"])

    def test_two_ways_to_one_file_are_no_circle(self):
        self.write("src/ground/x.h", '#include "ground/a.h"\n#include "ground/y.h"\n')
        self.write("src/ground/y.h", '#include "ground/a.h"\n')
        self.assertEqual(self.problems(), [])

    def test_include_that_names_no_file(self):
        self.write("src/ground/x.cpp", '#include "a.h"\n')
        self.assertEqual(self.problems(),
                         ['src/ground/x.cpp:1: "a.h" names no file below src/ or helpers/; include paths start there'])

    def test_file_without_a_floor(self):
        self.write("src/attic/x.cpp", "\n")
        self.assertEqual(self.problems(),
                         ["src/attic/x.cpp:1: this file stands on no floor of tools/checks/floors.txt"])

    def test_what_is_kept_for_some_is_included_by_them_alone(self):
        self.write("helpers/common/names.h", "\n")
        self.write("helpers/one/own.h", '#include "common/names.h"\n#include "ground/a.h"\n')
        self.write("src/middle/d.cpp", '#include "common/names.h"\n#include "one/own.h"\n')
        self.write("src/top/c.cpp", '#include "common/names.h"\n')
        self.assertEqual(self.problems(), [
            "src/middle/d.cpp:2: includes helpers/one/own.h, which is not for this file",
            "src/top/c.cpp:1: includes helpers/common/names.h, which is not for this file",
            "helpers/one/own.h:2: includes src/ground/a.h, which stands on floor 1, above floor 0 of this file"])

    def test_include_in_a_comment_does_not_count(self):
        self.write("src/top/c.h", "\n")
        self.write("src/ground/x.h", '// #include "top/c.h"\n/*\n#include "top/c.h"\n*/\n')
        self.assertEqual(self.problems(), [])


class SystemCalls(SmallTree):
    def places(self):
        return [problem.split(": ", 1)[0] for problem in system_calls.check(self.root)[0]]

    def test_system_headers_outside_their_folder(self):
        self.write("src/platform/win32/form.cpp", "#include <windows.h>\n#ifdef _WIN64\n#endif\n")
        self.write("helpers/zpt_ssh/win32/main.cpp", "#include <windows.h>\n")
        self.write("helpers/common/e.cpp", "#include <windows.h>\n")
        self.write("src/app/a.cpp", "#include <vector>\n#include <Windows.h>\n")
        self.write("src/platform/headless/b.cpp", "#include <unistd.h>\n")
        self.write("tests/unit/c.cpp", "#include <windows.h>\n")
        self.write("tests/unit/d.cpp", "#include <unistd.h>\n")
        self.assertEqual(self.places(), ["helpers/common/e.cpp:1", "src/app/a.cpp:2", "src/platform/headless/b.cpp:1", "tests/unit/c.cpp:1"])

    def test_calls_that_others_could_come_between(self):
        self.write("helpers/zpt_ssh/win32/a.cpp", "\n".join([
            "CreateProcessA(file.c_str(), line.data(), nullptr, nullptr,",
            "               TRUE, flags(1, 2), nullptr, nullptr, &info, &made);",
            "CreateProcessA(nullptr, line.data(), nullptr);",
            'LoadLibraryExA("a.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);', 'LoadLibraryA("a.dll");',
            'LoadLibraryExA("a.dll", nullptr, 0);', "CreateEventA(&attributes, TRUE, FALSE, nullptr);",
            'CreateEventA(&attributes, TRUE, FALSE, "ready");', "Handle job{CreateJobObjectA(nullptr, nullptr)};",
            "CreateJobObjectA(nullptr, name.c_str());", "CreateNamedPipeA(nullptr);", "// WinExec(line, 0)",
            "WinExec(line, 0);", "system (line);", "_popen(line)"]))
        self.write("tests/windows/b.cpp", "system(line);")
        self.assertEqual(sorted(int(place.split(":")[1]) for place in self.places()),
                         [3, 5, 6, 8, 10, 11, 13, 14, 15])

    def test_module_that_asks_for_the_system(self):
        self.write("src/app/a.cpp", "#if defined(_WIN32) && 1\n#endif\n// #ifdef _WIN32\n")
        self.write("tools/qxterm-scenario/main.cpp", "#ifdef _WIN32\n#endif\n")
        self.assertEqual(self.places(), ["src/app/a.cpp:1"])


class Words(SmallTree):
    def test_forbidden_words_and_the_path_of_the_checkout(self):
        self.write("tools/checks/words.txt", "# a comment\n\\bzzz\\b\tno sleeping\n")
        self.write("a.txt", f"fine\nso zzz it is\nzzzz is fine\nin {self.root}/a.txt\n")
        self.assertEqual(words.check(self.root), (['a.txt:2: "zzz": no sleeping',
                                                   f'a.txt:4: "{self.root}": the path of this checkout'], 1))


class CodeMap(SmallTree):
    ROWS = """# Map

| `docs/` | papers |
| `run` | starts it |

## The ground, `src/ground/`

| file | |
|---|---|
| `a.{h,cpp}` | both halves |

## `tests/`

| `unit/` | small ones |
"""

    def setUp(self):
        super().setUp()
        for path in ("run", "LICENSE", "src/ground/a.h", "src/ground/a.cpp", "tests/unit/deep/b.cpp"):
            self.write(path, "")

    def problems(self, rows):
        self.write("docs/code-map.md", rows)
        return code_map.check(self.root)[0]

    def test_whole_map_is_in_order(self):
        self.assertEqual(self.problems(self.ROWS), [])

    def test_file_and_folders_without_a_line(self):
        self.write("src/ground/new.h", "")
        self.write("tests/slow/c.py", "")
        self.write("attic/d.txt", "")
        self.assertEqual(self.problems(self.ROWS), [
            "docs/code-map.md:1: attic/ has no line", "docs/code-map.md:1: src/ground/new.h has no line",
            "docs/code-map.md:1: tests/slow/ has no line"])

    def test_line_without_a_file(self):
        self.assertEqual(self.problems(self.ROWS.replace("a.{h,cpp}", "a.{h,cpp,rc}")),
                         ["docs/code-map.md:10: src/ground/a.rc is not there, or needs no line"])
        self.assertEqual(self.problems(self.ROWS.replace("`unit/`", "`unit/` | x |\n| `gone/`")),
                         ["docs/code-map.md:15: tests/gone/ is not there, or needs no line"])

    def test_second_line_and_empty_line(self):
        self.assertEqual(self.problems(self.ROWS.replace("| `run` | starts it |", "| `run` | |\n| `run` | it |")),
                         ["docs/code-map.md:4: what run is, is not said",
                          "docs/code-map.md:5: run has a line already"])

    def test_missing_map(self):
        self.assertEqual(code_map.check(self.root)[0][0], "docs/code-map.md:1: src/ground/a.cpp has no line")


class Changes(SmallTree):
    def found(self, text):
        self.write("CHANGELOG.md", text)
        return changes.check(self.root)[0]

    def test_each_version_tells_of_security(self):
        good = "# Changes\n\n## 2.0\n\n- a\n\n### Security\n\n- Nothing.\n\n## 1.0\n\n### Security\n\n- b\n"
        self.assertEqual(self.found(good), [])
        self.assertEqual(self.found(good.replace("- Nothing.\n", "")),
                         ['CHANGELOG.md:3: 2.0 has no entry under "### Security"'])
        self.assertEqual(self.found("# Changes\n\n## 2.0\n\n- a\n\n## 1.0\n\n- b\n"),
                         ['CHANGELOG.md:3: 2.0 lacks "### Security"', 'CHANGELOG.md:7: 1.0 lacks "### Security"'])
        self.assertEqual(self.found("# Changes\n"), ["CHANGELOG.md:1: no version was found"])


class Faults(SmallTree):
    def setUp(self):
        super().setUp()
        before = os.getcwd()
        self.addCleanup(os.chdir, before)
        os.chdir(self.root)
        self.write(faults.TABLE, "#define FAULTY(X)       \\\n    X(BitBlt, none, 1)  \\\n    X(send, invalid, 2)\n")
        self.write(faults.PAGE, "Not tried: `SetFocus`, as nothing depends on it.\n")
        self.write(f"{faults.TESTS}/one.py", 'failing("BitBlt")\nstarts("send 1 2")\n')

    def test_calls_that_fail_are_named_or_carry_nothing(self):
        self.assertEqual(faults.check({"BitBlt", "send", "SetFocus", "GetParent", "LoadCursorA"}), [])

    def test_call_that_nothing_makes_fail(self):
        self.assertEqual(faults.check({"send", "LoadMenuA"}), ["LoadMenuA: it cannot be made to fail, and no page says why"])

    def test_entry_that_no_test_uses(self):
        self.write(f"{faults.TESTS}/one.py", 'failing("BitBlt")\nsender("x")\n')
        self.assertEqual(faults.check(set()), ["send: it can be made to fail, and no test does"])

    def test_table_of_imports(self):
        listing = ("\tDLL Name: KERNEL32.dll\n\tvma:  Hint/Ord Member-Name Bound-To\n\t1a2b\t  65  CloseHandle\n"
                   "\n\tDLL Name: msvcrt.dll\n\t1a2c\t  66  fopen\n\n\tDLL Name: WS2_32.dll\n\t1a2d\t<none>  send\n")
        self.assertEqual(faults.imported(listing), {"CloseHandle", "send"})


class Links(SmallTree):
    def found(self):
        return links.check(self.root)[0]

    def test_links_that_lead_somewhere(self):
        self.write("docs/b.md", "# Two words, and `code`\n\n```\n# no heading\n```\n")
        self.write("a.md", "[b](docs/b.md), [its head](docs/b.md#two-words-and-code), [folder](docs), [a long\n"
                           "one](docs/b.md), [out](https://host/x), [below](#here)\n\n## Here\n")
        self.assertEqual(self.found(), [])

    def test_links_that_lead_nowhere(self):
        self.write("docs/b.md", "# Head\n\n```\n# no heading\n```\n")
        self.write("docs/a.md", "see\n[a long\none](c.md)\n")
        self.write("a.md", "[b](b.md) [b](docs/b.md#no-heading)\n[up](../a.md)\n[here](#there)\n")
        self.assertEqual(sorted(self.found()), [
            "a.md:1: b.md leads nowhere", "a.md:1: docs/b.md#no-heading: docs/b.md has no such heading",
            "a.md:2: ../a.md leads nowhere", "a.md:3: #there: a.md has no such heading",
            "docs/a.md:3: c.md leads nowhere"])

    def test_code_holds_no_links(self):
        self.write("a.md", "`[a](b)`\n\n    [c](d)\n\n```\n[e](f)\n```\n\n- a list\n    [g](h)\n")
        self.assertEqual(self.found(), ["a.md:10: h leads nowhere"])

    def test_names_of_tests(self):
        self.write("tests/unit/a_test.cpp", "TEST(One, Two) {}\nTEST_P(Three, Four) {}\n")
        self.write("tests/scenarios/x/y.scn", "")
        self.write("cmake/RegisterTests.cmake", "qxterm_test(wine/prefix)\n")
        self.write("a.md", "`unit/One.Two` `unit/Three` `scenario/x/y` `wine/prefix` `unit/SUITE.CASE` `wine/NAME`\n"
                           "`unit/One.Four` `unit/Two`\n`scenario/x/z` `wine/flood` `check/prefixes`\n")
        self.assertEqual(self.found(), [
            "a.md:2: there is no test unit/One.Four", "a.md:2: there is no test unit/Two",
            "a.md:3: there is no test scenario/x/z", "a.md:3: there is no test wine/flood",
            "a.md:3: there is no test check/prefixes"])

    def test_commands_of_the_readme(self):
        for name, text in (("good", "echo help"), ("silent", "true"), ("bad", "echo help; exit 1")):
            self.write(name, f"#!/bin/sh\n{text}\n")
            os.chmod(os.path.join(self.root, name), 0o755)
        self.write("README.md", "Run `./good` or\n\n    ./silent\n    ./bad   # what\n    ./missing\n")
        self.assertEqual(self.found(), [
            "README.md:1: ./bad --help ended with status 1, and explained nothing",
            "README.md:1: there is no command ./missing",
            "README.md:1: ./silent --help ended with status 0, and explained nothing"])


class Pages(SmallTree):
    """What is read from the pages; comparing it with the program is tried on the pages themselves."""

    def test_tables_of_a_help_page(self):
        page = pages.Tables("<p>one\n<b>two</b></p><table><tr><th>A</th><th>B</th></tr>"
                            "<tr><td>x&nbsp; y</td><td>of <i>name</i>.<br>z</td></tr></table>")
        self.assertEqual(page.paragraphs, ["one two"])
        self.assertEqual(page.table("A", "B"), [["x y", "of %. z"]])
        self.assertEqual(page.table("A"), [["x y", "of %. z"]])
        self.assertIsNone(page.table("B"))

    def test_table_of_a_markdown_page(self):
        self.write("a.md", "## One\n\n| a | b |\n|---|---|\n| `c` | |\n\n| d | e |\n|---|---|\n| f | g |\n## Two\n")
        self.assertEqual(pages.markdown_table(self.root, "a.md", "One"), [["c", ""]])
        self.assertEqual(pages.markdown_table(self.root, "a.md", "Two"), [])

    def test_one_row_may_tell_several_keys(self):
        rows = [["Name", "-1 -1", ""], ["prefix, suffix", "ATDT, empty", ""], ["host", "", ""]]
        self.assertEqual(pages.names_and_defaults(rows), {"name": "-1 -1", "prefix": "ATDT", "suffix": "", "host": ""})

    def test_keys_that_the_sources_read(self):
        self.write("src/config/a.cpp", 'constexpr const char* key = "Third";\n'
                                       'x(readSetting(settingsSection, "First", "45")); readSetting(settingsSection, key, "3");\n'
                                       'section.text("Font", "m"); section.number16("baud", 1);\n'
                                       'const char* portKey(int t) {\n    return t ? "a" : "b";\n}\n')
        self.assertEqual(pages.settings_of_program(self.root), ({"first": "45", "third": "3"}, {"font", "baud", "a", "b"}))

    def test_bytes_of_keys(self):
        page = pages.Tables(
            "<table><tr><th>Key</th><th>What is sent</th></tr><tr><td>Del</td><td>delete (127)</td></tr>"
            "<tr><td>Cursor keys</td><td>ESC [ A up, ESC [ D left</td></tr><tr><td>Hyper</td><td>x</td></tr></table>"
            "<table><tr><th>Key</th><th>String</th></tr><tr><td>F1</td><td>ESC O c</td><td>F5</td><td>ESC O g</td></tr></table>")
        sent, problems = pages.keys_of_help(page)
        self.assertEqual(sent, {"Delete": "7f", "Up": "1b5b41", "Left": "1b5b44", "F1": "1b4f63", "F5": "1b4f67"})
        self.assertEqual(problems, ["resources/help/keys.htm:1: cannot tell what Hyper sends"])
        sent, problems = pages.keys_of_page([["Left, Up", "ESC [ D, ESC [ A"], ["Backspace, Tab", "8, 9"], ["Up, F2", "1"]])
        self.assertEqual(sent, {"Left": "1b5b44", "Up": "1b5b41", "Backspace": "08", "Tab": "09"})
        self.assertEqual(problems, ["docs/control-sequences.md:1: cannot tell what Up, F2 sends"])

    def test_keys_that_send_nothing(self):
        self.assertEqual(pages.silent_keys("What. F9 to F11 (F10 opens it), Home and Ins send nothing. More."),
                         {"F9", "F11", "Home", "Insert"})

    def test_texts_of_the_sources(self):
        self.write("src/a.cpp", 'box("Out of all "\n    "paper: \\"%1\\"");  // "Not a text here"\ntrace("one line");\n')
        self.write("src/platform/headless/b.cpp", 'x("Not of the program");\n')
        self.assertEqual(pages.texts_of_sources(self.root),
                         {'Out of all paper: "%1"': "src/a.cpp", "one line": "src/a.cpp"})
        self.assertTrue(pages.is_message('Out of all paper: "%1"'))
        for text in ("one line", "Only three words", "Subscript out of range", "Opening network connection to host: %1"):
            self.assertFalse(pages.is_message(text))
        self.assertEqual(pages.message_of_page('Out of all paper: "%" (title: Out)'), 'Out of all paper: "%"')

    def test_numbers_are_those_of_the_first_place(self):
        numbers = {"width": [("src/a.h", r"width = (\d+)"), ("b.md", r"(\d+) wide"), ("c.md", r"(\d+) wide")]}
        for path, text in (("src/a.h", "int width =\n 3;"), ("b.md", "it is 3\nwide"), ("c.md", "it is 4 wide")):
            self.write(path, text)
        with unittest.mock.patch.object(pages, "NUMBERS", numbers):
            self.assertEqual(pages.check_numbers(self.root, None), ["c.md:1: width: 4, but the program has 3"])
            self.write("c.md", "it is narrow")
            self.assertEqual(pages.check_numbers(self.root, None),
                             ["c.md:1: does not tell the width any more, or in other words"])

    def test_commands_of_the_scenario_tool(self):
        self.write("tools/qxterm-scenario/a.cpp", 'x = {{\n    {"host", false, host},\n    {"dump row", false, row},\n'
                                                  '    {"serial busy", true, busy},\n}};\n')
        page = ("## A\n| command | |\n|---|---|\n| `host BYTES`, `serial busy on` | x |\n## Dumps\n| `row N` | x |\n"
                '## Events\n| `{"event":"a"}` | x |\n')
        self.write("docs/scenario-tool.md", page)
        self.assertEqual(pages.check_commands(self.root, None), [])
        self.write("docs/scenario-tool.md", page.replace("serial busy on", "serial carrier on"))
        self.assertEqual(pages.check_commands(self.root, None), [
            "docs/scenario-tool.md:1: the tool has no command serial carrier on",
            "docs/scenario-tool.md:1: lacks the command serial busy"])

    def test_calls_that_fail_of_the_scenario_tool(self):
        self.write("src/platform/headless/failures.cpp",
                   '{{\n    {Point::clipboardSet, "clipboard.set", 0, "x"},\n    {Point::boxShow, "box.show", 0, "x"},\n}};\n')
        page = "## Calls that fail\n| POINT | |\n|---|---|\n| `clipboard.set` | x |\n| `box.show` | x |\n"
        self.write("docs/scenario-tool.md", page)
        self.assertEqual(pages.check_failures(self.root, None), [])
        self.write("docs/scenario-tool.md", page.replace("box.show", "box.hide"))
        self.assertEqual(pages.check_failures(self.root, None), [
            "docs/scenario-tool.md:1: no call fails under the name box.hide",
            "docs/scenario-tool.md:1: lacks the call box.show"])

    def test_exit_codes_of_the_helpers(self):
        for helper, codes in (("zpt_ssh", "23"), ("zpt_tnetd", "24")):
            self.write(f"helpers/{helper}/win32/main.cpp", "constexpr int one = 2;\nconstexpr int two = 3;\n")
            self.write(f"docs/{helper}.md", "## Exit status\n| code | meaning |\n" + "".join(f"| {c} | x |\n" for c in codes))
        self.assertEqual(pages.check_exit_codes(self.root, None), [
            "docs/zpt_tnetd.md:1: has the exit codes ['2', '4'], helpers/zpt_tnetd/win32/main.cpp has ['2', '3']"])

    def test_entries_are_compared_both_ways(self):
        self.assertEqual(pages.compare_entries("a", "it", {"x": "1", "y": "2"}, {"x": "2", "z": "3"}), [
            "a:1: it lacks z", "a:1: it has y, which the program does not know",
            'a:1: it, x: "1", but the program has "2"'])


class Manual(unittest.TestCase):
    """Help pages as Markdown."""

    def converted(self, text, depth=1):
        return manual.convert("keys", depth, f"<html><head><title>No</title></head><body>{text}</body></html>")

    def test_text_links_and_places(self):
        self.assertEqual(
            self.converted('<h1>Keys</h1>\n<h2><a name="more"></a>More</h2><p>See <b>A &gt; B</b>,&nbsp;<kbd>F1</kbd>\n'
                           '<a href="keys.htm#more">below</a> and\n<a href="window.htm">there</a>: a_b</p>'),
            '<a name="keys"></a>\n\n## Keys\n\n<a name="keys-more"></a>\n\n### More\n\n'
            "See **A > B**, `F1` [below](#keys-more) and [there](#window): a\\_b")

    def test_lists_notes_and_code(self):
        self.assertEqual(self.converted('<ol><li>one</li><li>two</li></ol><p class="note">n</p><pre>a_b\n c</pre>'
                                        "<ul><li>x</li></ul>", 2),
                         "1. one\n2. two\n\n> n\n\n    a_b\n     c\n\n- x")

    def test_tables(self):
        self.assertEqual(self.converted('<table><tr><th>A</th><th>B</th></tr><tr><td rowspan="2">x</td><td>y|z<br>w</td>'
                                        "</tr><tr><td>v</td></tr><tr><td>r</td><td>s</td></tr></table>"),
                         "| A | B |\n| --- | --- |\n| x | y\\|z<br>w |\n|  | v |\n| r | s |")

    def test_an_element_that_it_does_not_know_is_not_lost(self):
        with self.assertRaises(manual.UnknownElement):
            self.converted("<p>a <u>b</u></p>")
        self.assertEqual(self.converted("<h3>x</h3>", 2), "##### x")

    def test_order_and_depth_are_those_of_the_contents(self):
        entry = '<li><object><param name="Name" value="{0}"><param name="Local" value="{0}.htm"></object>'
        contents = f"<ul>{entry.format('a')}<ul>{entry.format('b')}</ul>{entry.format('c')}</ul>"
        self.assertEqual(manual.entries_of(contents), [(1, "a", "a.htm"), (2, "b", "b.htm"), (1, "c", "c.htm")])
        text = manual.manual("T", contents, lambda name: f"<h1>{name}</h1>")
        self.assertIn("- [a](#a)\n  - [b](#b)\n- [c](#c)", text)
        self.assertIn('## a.htm\n\n<a name="b"></a>\n\n### b.htm\n\n<a name="c"></a>\n\n## c.htm\n', text)


class Examples(SmallTree):
    PROGRAM = [sys.executable, "-c", "import sys; [print('{\"file\":\"a\",\"line\":%d}\\n{\"event\":\"%s\"}' % (n, line[:-1])) "
               "for n, line in enumerate(open(sys.argv[2]), 1) if line.strip() and line[0] != '#']"]

    def found(self, text):
        self.write("a.md", text)
        return examples.check(self.root, self.PROGRAM)

    def test_each_block_is_played_by_itself(self):
        self.assertEqual(self.found("# a\n```scenario\nx\n#> x\n```\nword\n```\nno\n```\n```scenario\ny\n#> y\n```\n"), ([], 2))

    def test_difference_is_told_with_the_line_of_the_page(self):
        self.assertIn("a.md:3: x", self.found("# a\n```scenario\nx\n#> z\n```\n")[0])

    def test_block_without_an_end(self):
        self.assertNotEqual(self.found("```scenario\nx\n#> x\n")[0], [])


class ScenarioFile(SmallTree):
    def there_and_back(self, item):
        lines = scenario_file.encode(item)
        # The order of the keys too.
        self.assertEqual(json.dumps(scenario_file.decode(lines)), json.dumps(item))
        return lines

    def complaint(self, *lines):
        with self.assertRaises(scenario_file.Malformed) as raised:
            scenario_file.decode(lines)
        return f"{raised.exception.line}: {raised.exception}"

    def test_events_and_short_dumps_are_one_line(self):
        self.assertEqual(self.there_and_back({"event": "label", "name": "cmd(3)", "text": 'a "b" = \u00e9\x01|'}),
                         ['label name="cmd(3)" text="a \\"b\\" = \u00e9\\u0001|"'])
        self.assertEqual(self.there_and_back({"event": "trace", "line": "\x85\u00a0"}), ['trace line="\\u0085\\u00a0"'])
        self.assertEqual(self.there_and_back({"event": "beep"}), ["beep"])
        self.assertEqual(self.there_and_back({"dump": "lists", "profiles": [], "x": None, "my key": {}}),
                         ['dump lists profiles=[] x=null "my key"={}'])

    def test_any_other_object_is_json(self):
        for item in ({}, [], {"a": 1, "event": "x"}, {"event": 5}, {"event": "dump", "x": 1}, {"dump": ""}, "text"):
            self.assertEqual(scenario_file.encode(item), [scenario_file.as_json(item)])
        self.there_and_back({"a": 1, "event": "x"})

    def test_rows_stand_between_bars_and_runs_are_counted(self):
        rows = [" a|".ljust(80)] + [" " * 80] * 24
        fg = [[7] * 80] * 24 + [[7, 7, 1] + [0] * 77]
        self.assertEqual(self.there_and_back({"dump": "window", "text": rows, "fg": fg, "rowMap": list(range(25))}), [
            "dump window", f"  text[0]:     |{rows[0]}|", f"  text[1-24]:  |{rows[1]}|", "  fg[0-23]:  [7*80]",
            "  fg[24]:    [7*2 1 0*77]", "  rowMap=[0..24]"])

    def test_objects_stand_below_one_a_line(self):
        slots = [{"free": True, "next": 0}] * 2 + [{"free": False, "next": 4}]
        self.assertEqual(self.there_and_back({"dump": "x", "rows": {"0": "a", "10": ""}, "slots": slots, "n": 1}), [
            "dump x", "  rows.0:  |a|", "  rows.10: ||", "  slots[0-1]: free=true next=0",
            "  slots[2]:   free=false next=4", "  n=1"])

    def test_long_values_go_on(self):
        lines = self.there_and_back({"event": "box", "text": "one\r\n" * 30 + "x" * 200})
        self.assertEqual(lines[1][:16], '  text: "one\\r\\n')
        self.assertEqual(lines[2][:17], '  text+: "one\\r\\n')
        self.assertLess(max(map(len, lines)), 200)
        lines = self.there_and_back({"dump": "row", "words": [7, 9] * 200, "more": [[i, i] for i in range(99)]})
        self.assertLess(max(map(len, lines)), 200)

    def test_a_screen_comes_back(self):
        self.there_and_back({
            "dump": "screen", "cursor": [0, 24], "pending": "\x00\xff", "carry": "1b5b", "rowMap": [1, 0, 2, 2, 3],
            "rows": ["\x80" + " " * 79, "\xa0 " * 40, "\n", "|", ""], "dirty": [[0, 79]] * 25,
            "attrs": [[1792] * 80, [-1, 0] * 40, [], [1], [True]],
            "deep": {"a": [{"b": [{}, {"c": []}]}], "": {"x.y": {"[0]": "q" * 300}}}})

    def test_written_by_hand(self):
        self.assertEqual(scenario_file.decode(["window  op=\"show\"", "  name=\"a\"   n=[1,2]", "  x.y: z=[3]"]),
                         {"event": "window", "op": "show", "name": "a", "n": [1, 2], "x": {"y": {"z": [3]}}})
        self.assertEqual(scenario_file.decode(['{"event": "beep"}']), {"event": "beep"})

    def test_malformed_lines_are_named(self):
        self.assertEqual(self.complaint("Caption"),
                         '1: an object begins with the name of an event, with "dump NAME", or with "{"')
        self.assertEqual(self.complaint("{} x"), "1: nothing more is expected:  x")
        self.assertEqual(self.complaint("box title"), "1: KEY=VALUE is expected: title")
        self.assertEqual(self.complaint("box", "  a=1 a=2"), "2: a stands there twice")
        self.assertEqual(self.complaint("box a=1b"), "1: a blank is expected behind a value: b")
        self.assertEqual(self.complaint("box a=[1x]"), "1: this is no value: [1x]")
        self.assertEqual(self.complaint("box", "  a: |text"), "2: the bar behind the text is missing")
        self.assertEqual(self.complaint("box", "  a[0]: |x|", "  a[2]: |x|"), "3: item 2 stands before item 1")
        self.assertEqual(self.complaint("box", "  a[3-2]: |x|"), "2: [N] or [N-M] is expected: [3-2]: |x|")
        self.assertEqual(self.complaint("box", "  a[0]: |x|", "  a.b: |x|"),
                         "3: the path does not fit what stands above: b")
        self.assertEqual(self.complaint("box", '  a+: "x"'), "2: there is no such text or list that goes on")
        self.assertEqual(self.complaint("box a=1", "  a: b=1"), "2: the path leads to no object")

    def test_file_is_read_and_written_as_it_stands(self):
        text = "# about\n\nhost 41\n#> beep\n# note\n#> dump x\n#>   a=1\n\nwait 5\n"
        self.write("a.scn", text)
        path = os.path.join(self.root, "a.scn")
        commands = scenario_file.read(path)
        self.assertEqual([(c.line, c.text, c.expected()) for c in commands], [
            (0, "", []), (3, "host 41", [{"event": "beep"}, {"dump": "x", "a": 1}]), (9, "wait 5", [])])
        scenario_file.write(path, commands)
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read(), text)

    def test_malformed_files(self):
        for text, line in (("#> beep\n", 1), ("wait 5\n #> beep\n", 2), ("wait 5\n#>beep\n", 2),
                           ("wait 5\n#> beep\n# note\n#>   a=1\n", 4), ("wait 5\n#> beep\n#>   a=1\n#>   a=1\n", 4)):
            self.write("a.scn", text)
            with self.assertRaises(scenario_file.Malformed) as raised:
                scenario_file.read(os.path.join(self.root, "a.scn"))
            self.assertEqual(raised.exception.line, line, text)


class ScenarioRunner(SmallTree):
    """The program is one that prints a text, whatever the scenario says. The command of the scenario is its line 1."""

    LINE = '{"file":"a.scn","line":1}\n'

    def program(self, output, status, errors):
        output = self.LINE + output
        program = f"import sys; sys.stdout.write({output!r}); sys.stderr.write({errors!r}); sys.exit({status})"
        return [sys.executable, "-c", program]

    def run_with(self, output, below, status=0, errors=""):
        self.write("a.scn", "wait 5\n" + below)
        return scenarios.run(self.program(output, status, errors), os.path.join(self.root, "a.scn"))

    def written(self, output, text, status=0, errors=""):
        self.write("a.scn", text)
        path = os.path.join(self.root, "a.scn")
        said = scenarios.write(self.program(output, status, errors), path)
        with open(path, encoding="utf-8") as file:
            return file.read(), said

    def test_same_objects_in_another_spelling(self):
        self.assertEqual(self.run_with('{"event":"x","b":1,"a":[true]}\r\n', "# note\n\n#> x a=[true]\n#>   b=1\n"), [])

    def test_difference_shows_file_line_and_command(self):
        path = os.path.join(self.root, "a.scn")
        self.assertEqual(self.run_with('{"dump":"page","cursor":[0,1],"rows":{"0":"a","1":"c"}}\n',
                                       "#> dump page cursor=[0,1]\n#>   rows.0: |a|\n#>   rows.1: |b|\n"),
                         [f"{path}:1: wait 5", "      dump page cursor=[0,1]", "        rows.0:  |a|",
                          "    -   rows.1:  |b|", "    +   rows.1:  |c|",
                          "    (- is expected and missing, + was printed instead)"])

    def test_true_is_not_one(self):
        self.assertNotEqual(self.run_with('{"event":"x","a":1}\n', "#> x a=true\n"), [])

    def test_missing_and_further_objects(self):
        self.assertNotEqual(self.run_with('{"event":"x"}\n', "#> x\n#> x\n"), [])
        self.assertNotEqual(self.run_with('{"event":"x"}\n{"event":"y"}\n', "#> x\n"), [])
        self.assertNotEqual(self.run_with("", "#> x\n"), [])

    def test_order_counts(self):
        self.assertNotEqual(self.run_with('{"event":"x"}\n{"event":"y"}\n', "#> y\n#> x\n"), [])

    def test_the_command_counts(self):
        self.assertEqual(self.run_with('{"event":"x"}\n{"file":"a.scn","line":3}\n{"event":"y"}\n',
                                       "#> x\nwait 6\n#> y\n"), [])
        self.assertNotEqual(self.run_with('{"event":"x"}\n{"event":"y"}\n', "#> x\nwait 6\n#> y\n"), [])
        self.assertNotEqual(self.run_with('{"event":"x"}\n{"file":"a.scn","line":2}\n{"event":"y"}\n', "#> x\n"), [])

    def test_scenario_that_expects_nothing(self):
        self.assertEqual(self.run_with("", ""), [])
        self.assertNotEqual(self.run_with('{"event":"x"}\n', ""), [])

    def test_status_and_standard_error_count(self):
        path = os.path.join(self.root, "a.scn")
        out = '{"event":"x"}\n'
        self.assertIn(f"{path}: exit status 2, and on standard error:", self.run_with(out, "#> x\n", status=2))
        self.assertNotEqual(self.run_with(out, "#> x\n", errors="what"), [])
        fault = '#> x\n#> fault message="what"\n'
        self.assertEqual(self.run_with(out, fault, status=2, errors=f"{path}:1: what\n"), [])
        self.assertNotEqual(self.run_with(out, fault, status=2, errors=f"{path}:1: why\n"), [])
        self.assertNotEqual(self.run_with(out, fault, status=0, errors=f"{path}:1: what\n"), [])
        self.assertNotEqual(self.run_with(out, "#> x\n", status=2, errors=f"{path}:1: what\n"), [])

    def test_output_that_is_no_json(self):
        self.assertNotEqual(self.run_with('{"event":"x"}\ncrash\n', "#> x\n"), [])
        # Only the file has comments.
        path = os.path.join(self.root, "a.scn")
        for line in ("# note", "#> y"):
            self.assertEqual(self.run_with('{"event":"x"}\n' + line + "\n", "#> x\n"),
                             [f"{path}: this was printed, and is no JSON: {line}"])

    def test_malformed_expectation_is_reported_with_file_and_line(self):
        path = os.path.join(self.root, "a.scn")
        self.assertEqual(self.run_with("", "#> x\n#>   a\n"), [f"{path}:3: KEY=VALUE is expected: a"])

    def test_writing_keeps_comments_before_their_objects(self):
        text, said = self.written('{"event":"new"}\n{"event":"x","a":1}\n{"event":"y"}\n',
                                  "wait 5\n# on x\n#> x\n#>   a=1\n# on y\n#> y z=1\n\n# the next\nwait 6\n#> old\n")
        self.assertEqual(text, "wait 5\n#> new\n# on x\n#> x\n#>   a=1\n# on y\n#> y\n\n# the next\nwait 6\n")
        self.assertIn("by hand", said[0])

    def test_writing_below_a_command_that_expected_nothing(self):
        self.assertEqual(self.written('{"event":"x"}\n', "wait 5\n# the next\nwait 6\n")[0],
                         "wait 5\n#> x\n# the next\nwait 6\n")

    def test_writing_leaves_what_is_right_or_broken(self):
        text = "wait 5\n#> x\n#>   a=1\n"
        self.assertEqual(self.written('{"event":"x","a":1}\n', text), (text, []))
        self.assertEqual(self.written('{"event":"y"}\n', text, status=1, errors="crash")[0], text)
        self.assertEqual(self.written('{"file":"a.scn","line":2}\n{"event":"y"}\n', text)[0], text)


class IniFile(unittest.TestCase):
    def test_values_are_replaced_in_their_section_only(self):
        before = ["[a]", "Host=1", "", "[b]", "host=2", "x=3"]
        self.assertEqual(ini.put(before, "B", [("HOST", "9"), ("new", "4")]),
                         ["[a]", "Host=1", "", "[b]", "HOST=9", "x=3", "new=4"])

    def test_new_key_goes_before_the_blank_line_that_ends_the_section(self):
        self.assertEqual(ini.put(["[a]", "x=1", "", "[b]"], "a", [("y", "2")]), ["[a]", "x=1", "y=2", "", "[b]"])

    def test_new_section_goes_to_the_end(self):
        self.assertEqual(ini.put(["[a]", "x=1"], "b", [("y", "a=b")]), ["[a]", "x=1", "", "[b]", "y=a=b"])
        self.assertEqual(ini.put([], "b", [("y", "")]), ["[b]", "y="])


if __name__ == "__main__":
    unittest.main()
