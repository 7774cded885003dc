"""What tools/mutate changes in a line, and what it leaves alone."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "mutate"))
import places  # noqa: E402
import schemata  # noqa: E402


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


def switched(text, choose):
    """The text with the mutants that `choose` takes behind switches, numbered from 1 in their order; and how many cannot."""
    found = [mutant for mutant in places.mutants_of("x.cpp", text.split("\n")) if choose(mutant)]
    schema = schemata.Schema(text, dict(enumerate(found, 1)))
    return schema.source(), len(schema.left_out)


def of_kind(*kinds):
    return lambda mutant: mutant.kind in kinds


class Switches(unittest.TestCase):
    def test_the_whole_expression_stands_behind_the_switch(self):
        self.assertEqual(switched("    int x = f(a < b && c, d);", of_kind("comparison"))[0],
                         "    int x = f((mutantOn(1) ? (a <= b && c) : (a < b && c)), d);")
        self.assertEqual(switched("    return row + 1 < last ? row : 0;", of_kind("comparison"))[0],
                         "    return (mutantOn(1) ? (row + 1 <= last) : (row + 1 < last)) ? row : 0;")

    def test_exchanged_arguments_take_their_call_along(self):
        self.assertEqual(switched("    out += rest.cut(0, percent) + end;", of_kind("arguments exchanged"))[0],
                         "    out += (mutantOn(1) ? (rest.cut(percent, 0) + end) : (rest.cut(0, percent) + end));")

    def test_several_mutants_share_a_place_or_stand_in_each_other(self):
        self.assertEqual(switched("    x = a[n + 1] + b;", of_kind("arithmetic"))[0],
                         "    x = (mutantOn(2) ? (a[n + 1] - b) : (a[(mutantOn(1) ? (n - 1) : (n + 1))] + b));")
        self.assertEqual(switched("    x = 7;", of_kind("number"))[0],
                         "    x = (mutantOn(1) ? (6) : mutantOn(2) ? (8) : (7));")

    def test_statements_and_conditions(self):
        self.assertEqual(switched("{\n    run(a);\n}", of_kind("statement left out"))[0],
                         "{\n    { if (!mutantOn(1)) { run(a); } }\n}")
        self.assertEqual(switched("    if (ready) go();", of_kind("condition turned"))[0],
                         "    if ((mutantOn(1) ? static_cast<bool>(!static_cast<bool>(ready)) : static_cast<bool>(ready))) go();")

    def test_lines_and_texts_keep_their_places(self):
        text = 'int f() {  // a + b\n    return g("x + 1",\n             n + 2);\n}'
        changed = switched(text, of_kind("arithmetic"))[0]
        self.assertEqual(changed.split("\n")[2], "             (mutantOn(1) ? (n - 2) : (n + 2)));")
        self.assertIn('"x + 1"', changed)

    def test_a_constant_gets_its_value_when_the_program_starts(self):
        self.assertEqual(switched("inline constexpr int last = 9;  // a comment", of_kind("number"))[0].rstrip(),
                         "inline const int last = (mutantOn(1) ? (8) : mutantOn(2) ? (10) : (9));")

    def test_what_cannot_be_switched_is_left_out(self):
        source, left_out = switched("    std::array<int, 4> all{};", of_kind("number"))
        self.assertEqual((source, left_out), ("    std::array<int, 4> all{};", 2))
        self.assertEqual(switched("    return a &&\n    b.c(d, e);", of_kind("statement left out"))[1], 1)


if __name__ == "__main__":
    unittest.main()
