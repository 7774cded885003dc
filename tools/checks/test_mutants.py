"""What tools/mutate changes in a line, and what it leaves alone."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "mutate"))
import places  # noqa: E402


def changes(line):
    """What becomes of a line: (kind, changed line) of each mutant."""
    return [(mutant.kind, mutant.after) for mutant in places.mutants_of("x.cpp", [line])]


class Places(unittest.TestCase):
    def test_comparisons_and_conditions(self):
        found = changes("    if (row < last && ready()) return;")
        self.assertEqual(found, [
            ("comparison", "    if (row <= last && ready()) return;"),
            ("and, or", "    if (row < last || ready()) return;"),
            ("condition turned", "    if (!(row < last && ready())) return;")])

    def test_brackets_of_templates_are_no_comparisons(self):
        self.assertEqual(changes("    const std::vector<int> all = rows();"), [])
        self.assertEqual(changes("template <class Kind>"), [])

    def test_numbers_go_up_and_down(self):
        self.assertEqual(changes("constexpr int last = 79;"), [("number", "constexpr int last = 78;"),
                                                              ("number", "constexpr int last = 80;")])
        self.assertEqual(changes("constexpr int none = 0;"), [("number", "constexpr int none = 1;")])
        self.assertEqual(changes("    std::int16_t value;"), [])

    def test_texts_and_comments_are_left_alone(self):
        self.assertEqual(changes('    return "1 < 2 && 3";  // 4'), [("result turned", '    return !("1 < 2 && 3");')])
        self.assertEqual(changes("// a + b"), [])

    def test_statements_are_left_out_and_declarations_are_not(self):
        self.assertEqual(changes('    show("a, b");'), [("statement left out", "    ;")])
        self.assertEqual(changes("    place.left = start;"), [("statement left out", "    ;")])
        self.assertEqual(changes("    int left = start;"), [])
        self.assertEqual(changes("    return;"), [])

    def test_arguments_are_exchanged(self):
        self.assertEqual(changes('    const bool found = among("x", name);'),
                         [("arguments exchanged", '    const bool found = among(name, "x");')])
        self.assertEqual(changes("    const bool found = among(name, name);"), [])

    def test_every_line_keeps_its_place(self):
        found = places.mutants_of("x.cpp", ["int a = 1;", "", "    run();"])
        self.assertEqual([(mutant.line, mutant.before) for mutant in found],
                         [(1, "int a = 1;"), (1, "int a = 1;"), (3, "    run();")])


if __name__ == "__main__":
    unittest.main()
