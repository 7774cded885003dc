"""The checks find what they are there to find, and nothing else."""

import importlib.util
import os
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)


def load(path):
    """A script as a module; its name need not be an identifier."""
    name = os.path.splitext(os.path.basename(path))[0].replace("-", "_")
    found = importlib.util.spec_from_file_location(name, path)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


includes = load(os.path.join(HERE, "check-includes.py"))
system_calls = load(os.path.join(HERE, "check-system-calls.py"))
words = load(os.path.join(HERE, "check-words.py"))
pairs = load(os.path.join(HERE, "check-scenario-pairs.py"))
code_map = load(os.path.join(HERE, "check-code-map.py"))
scenarios = load(os.path.join(HERE, "run-scenario.py"))
ini = load(os.path.join(HERE, "../setup/ini.py"))

FLOORS = """
1 src/ground/**
2 src/middle/**
1 src/middle/{low,lower}*
3 src/top/**
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
                         ['src/ground/x.cpp:1: "a.h" names no file below src/; include paths start there'])

    def test_file_without_a_floor(self):
        self.write("src/attic/x.cpp", "\n")
        self.assertEqual(self.problems(),
                         ["src/attic/x.cpp:1: this file stands on no floor of tools/checks/floors.txt"])

    def test_include_in_a_comment_does_not_count(self):
        self.write("src/top/c.h", "\n")
        self.write("src/ground/x.h", '// #include "top/c.h"\n/*\n#include "top/c.h"\n*/\n')
        self.assertEqual(self.problems(), [])


class SystemCalls(SmallTree):
    def places(self):
        return [problem.split(": ", 1)[0] for problem in system_calls.check(self.root)[0]]

    def test_system_headers_outside_their_folder(self):
        self.write("src/platform/win32/form.cpp", "#include <windows.h>\n#ifdef _WIN64\n#endif\n")
        self.write("helpers/zpt_ssh/main.cpp", "#include <windows.h>\n")
        self.write("src/app/a.cpp", "#include <vector>\n#include <Windows.h>\n")
        self.write("src/platform/headless/b.cpp", "#include <unistd.h>\n")
        self.write("tests/unit/c.cpp", "#include <windows.h>\n")
        self.write("tests/unit/d.cpp", "#include <unistd.h>\n")
        self.assertEqual(self.places(), ["src/app/a.cpp:2", "src/platform/headless/b.cpp:1", "tests/unit/c.cpp:1"])

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


class ScenarioPairs(SmallTree):
    def test_missing_halves(self):
        for name in ("whole.scn", "whole.expected", "left.scn", "right.expected"):
            self.write("tests/scenarios/" + name, "")
        self.assertEqual([p.split(": ", 1)[0] for p in pairs.check(self.root)[0]],
                         ["tests/scenarios/left.scn:1", "tests/scenarios/right.expected:1"])


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


class ScenarioRunner(SmallTree):
    def run_with(self, output, expected, status=0, errors=""):
        self.write("a.scn", "")
        self.write("a.expected", expected)
        program = f"import sys; sys.stdout.write({output!r}); sys.stderr.write({errors!r}); sys.exit({status})"
        return scenarios.run([sys.executable, "-c", program], os.path.join(self.root, "a.scn"))

    def test_same_objects_in_another_spelling(self):
        self.assertEqual(self.run_with('{"b": 1, "a":[true]}\r\n', '# note\n\n{"a":[true],"b":1}\n'), [])

    def test_changed_object_shows_the_place(self):
        lines = self.run_with('{"dump":"screen","attr":[1,2,3]}\n', '{"dump":"screen","attr":[1,9,3]}\n')
        self.assertIn("      attr[1]: expected 9, got 2", lines)

    def test_true_is_not_one(self):
        self.assertNotEqual(self.run_with('{"a":1}\n', '{"a":true}\n'), [])

    def test_missing_and_further_objects(self):
        self.assertNotEqual(self.run_with('{"a":1}\n', '{"a":1}\n{"a":2}\n'), [])
        self.assertNotEqual(self.run_with('{"a":1}\n{"a":2}\n', '{"a":1}\n'), [])
        self.assertNotEqual(self.run_with("", '{"a":1}\n'), [])

    def test_order_counts(self):
        self.assertNotEqual(self.run_with('{"a":1}\n{"a":2}\n', '{"a":2}\n{"a":1}\n'), [])

    def test_status_and_standard_error_count(self):
        self.assertIn("  exit status 2, expected 0", self.run_with("", "", status=2))
        self.assertNotEqual(self.run_with("", "", errors="what"), [])
        self.write("a.stderr", "what")
        self.assertEqual(self.run_with("", "", status=2, errors="what"), [])
        self.assertIn("  exit status 0, expected 2", self.run_with("", "", errors="what"))

    def test_output_that_is_no_json(self):
        self.assertNotEqual(self.run_with("crash\n", ""), [])


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
