"""Tests of what judges a run: what grows is found, what only comes and goes is not. QXTERM_SCENARIO: the tool's program."""

import os
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import chart  # noqa: E402
import report  # noqa: E402
import samples  # noqa: E402
import scenario  # noqa: E402
from figures import WINDOW, Figure  # noqa: E402
from judgement import answers, answersOf, judged, percentile, slope  # noqa: E402

COUNT = Figure("handles", "handles", "", 0)
MEMORY = Figure("private", "private memory", "KiB", 1024)
PHASES = ("y lines", "serial", "loop")


def run(value, rounds=10, sitting=1.0):
    """The samples of a run of rounds of a minute a phase. value(round, phase): of both figures."""
    return [{"sitting": sitting, "seconds": 60.0 * (3 * number + place), "phase": f"{number} {phase}", "rest": 1.0,
             "handles": value(number, phase), "private": value(number, phase)}
            for number in range(2, 2 + rounds) for place, phase in enumerate(PHASES)]


def good(figure, rows):
    return judged(rows, [figure])[0].good


class Slopes(unittest.TestCase):
    def test_what_stays_is_flat(self):
        self.assertTrue(good(COUNT, run(lambda number, phase: 40)))

    def test_one_more_in_a_sitting_is_found(self):
        self.assertFalse(good(COUNT, run(lambda number, phase: 40 + 0.2 * number)))

    def test_one_lost_by_a_phase_of_each_round_is_found(self):
        self.assertFalse(good(COUNT, run(lambda number, phase: 40 + number + (phase == "loop"))))

    def test_what_a_phase_leaves_for_a_while_is_flat(self):
        self.assertTrue(good(COUNT, run(lambda number, phase: 40 + 5 * (phase == "serial"))))

    def test_a_single_sample_moves_nothing(self):
        self.assertTrue(good(COUNT, run(lambda number, phase: 90 if number == 5 else 40)))

    def test_less_and_less_is_good(self):
        self.assertTrue(good(COUNT, run(lambda number, phase: 40 - number)))

    def test_memory_has_its_bound_for_an_hour(self):
        # A round takes three minutes; the samples of forty are 1.98 hours apart.
        self.assertTrue(good(MEMORY, run(lambda number, phase: 10000 + 51 * number, rounds=40)))
        self.assertFalse(good(MEMORY, run(lambda number, phase: 10000 + 52 * number, rounds=40)))

    def test_memory_may_grow_as_much_in_half_an_hour(self):
        # Those of ten rounds are 0.483 hours apart.
        self.assertTrue(good(MEMORY, run(lambda number, phase: 10000 + 105 * number)))
        self.assertFalse(good(MEMORY, run(lambda number, phase: 10000 + 107 * number)))

    def test_each_sitting_has_a_slope_of_its_own(self):
        second = run(lambda number, phase: 70, sitting=2.0)
        self.assertTrue(good(COUNT, run(lambda number, phase: 40) + second))
        rising = run(lambda number, phase: 40 + number, sitting=2.0)
        self.assertFalse(good(COUNT, run(lambda number, phase: 40) + rising))

    def test_phases_are_not_compared_with_each_other(self):
        early, late = [(n, 40, "loop") for n in range(6)], [(n, 45, "serial") for n in range(6, 12)]
        self.assertEqual(slope(early + late), 0)

    def test_too_few_samples_are_not_good(self):
        self.assertFalse(good(COUNT, run(lambda number, phase: 40, rounds=1)))
        self.assertFalse(good(COUNT, [row for row in run(lambda number, phase: 40) if row["phase"].endswith("loop")][:4]))


class Answers(unittest.TestCase):
    def test_late_ones(self):
        idle = [1.0] * 100
        self.assertTrue(answers("", [5.0] * 96 + [900.0] * 4, idle, 0.95).good)
        self.assertFalse(answers("", [5.0] * 94 + [900.0] * 6, idle, 0.95).good)

    def test_what_the_machine_takes_is_allowed_besides(self):
        self.assertTrue(answers("", [130.0] * 100, [40.0] * 100, 0.95).good)
        self.assertFalse(answers("", [130.0] * 100, [20.0] * 100, 0.95).good)

    def test_a_share_of_the_processor(self):
        self.assertTrue(answers("", [290.0] * 100, [1.0] * 100, 0.95, stretch=3).good)
        self.assertFalse(answers("", [310.0] * 100, [1.0] * 100, 0.95, stretch=3).good)
        self.assertEqual(report.stretched([{"ran": 10, "waited": 20}, {"ran": 10, "waited": 0}]), 2)
        self.assertEqual(report.stretched([{}]), 1)

    def test_lines_of_the_asker(self):
        self.assertEqual(answersOf("1500 200\n-1 300\n12"), ([1.5, 10000.0], [0.2, 0.3]))

    def test_percentile(self):
        self.assertEqual([percentile(range(100), share) for share in (0, 0.5, 0.99, 1)], [0, 50, 99, 99])


class Folders(unittest.TestCase):
    def setUp(self):
        self._scratch = tempfile.TemporaryDirectory()
        self.addCleanup(self._scratch.cleanup)
        self.folder = Path(self._scratch.name) / "run"

    def begin(self, build, anew=False):
        one = samples.Run(self.folder)
        one.begin(build, anew)
        return one

    def test_a_second_sitting_goes_on(self):
        self.begin("one").add({"part": "window", "number": 1, "failures": []})
        self.assertEqual(len(self.begin("one").sittings("window")), 1)

    def test_another_build_begins_anew(self):
        self.begin("one").add({"part": "window", "number": 1, "failures": []})
        self.assertEqual(self.begin("two").sittings("window"), [])
        aside = samples.Run(self.folder.with_name("run-before"))
        self.assertEqual(len(aside.sittings("window")), 1)

    def test_samples_come_back(self):
        table = samples.Table(self.folder / "window.csv", ("seconds", "phase", "answer50"))
        table.add({"seconds": "1.5", "phase": "1 loop"})
        self.assertEqual(samples.rows(self.folder / "window.csv"), [{"seconds": 1.5, "phase": "1 loop", "answer50": None}])

    def test_nothing_is_written_about_nothing(self):
        before = report.PAGE.read_bytes()
        self.assertFalse(report.report(samples.Run(self.folder), write=True))
        self.assertEqual(report.PAGE.read_bytes(), before)

    def test_first_round_and_samples_between_are_not_judged(self):
        one = self.begin("one")
        columns = ("sitting", "seconds", "phase", "rest",
                   *(figure.column for figure in WINDOW if figure.column != "elsewhere"))
        table = samples.Table(self.folder / "window.csv", columns)
        for number in range(1, 4):
            for place in range(10):
                # Lower in the first round, and higher and higher between the three samples at rest.
                rest = place % 4 == 0
                values = {name: (0 if number == 1 else 40) if rest else 1000 * number + place for name in columns[4:]}
                table.add({"sitting": 1, "seconds": 600 * number + 60 * place, "phase": f"{number} loop", "rest": int(rest),
                           **values})
        self.assertEqual([verdict.title for verdict in report.judgedWindow(one) if not verdict.good],
                         ["the window answers a message", "a key reaches the host"])


class Elsewhere(unittest.TestCase):
    def test_what_serial_phases_leave_is_taken_out(self):
        rows = [{"sitting": 1.0, "phase": phase, "heap": heap} for phase, heap in
                (("1 loop", 100.0), ("1 serial", 140.0), ("2 loop", 143.0), ("2 serial", 190.0), ("3 loop", 190.0))]
        self.assertEqual([row["elsewhere"] for row in samples.withElsewhere(rows)], [100, 100, 103, 103, 103])


class Chart(unittest.TestCase):
    def test_drawing_is_whole(self):
        rows = [row | {figure.column: 5.0 for figure in WINDOW} | {"answer99": 20.0, "idle99": None, "received": 1e9, "load": 2.0}
                for sitting in (1.0, 2.0) for row in run(lambda number, phase: 40, sitting=sitting)]
        drawing = xml.fromstring(chart.chart(rows, []))
        texts = [text.text for text in drawing.iter("{http://www.w3.org/2000/svg}text")]
        self.assertIn("GDI objects", texts)
        self.assertIn("serial", texts)
        fills = {box.get("fill") for box in drawing.iter("{http://www.w3.org/2000/svg}rect")}
        self.assertIn(chart.PHASES["serial"], fills)

    def test_axis_ends_above_the_highest(self):
        for value in (1, 7, 99, 100, 101, 12345):
            top = chart.roundTop(value)
            self.assertTrue(value <= top <= 2 * value, (value, top))

    def test_many_samples_stay_few_points(self):
        points = chart.thinned([(n / 1000, n % 7) for n in range(20000)], 100)
        self.assertLessEqual(len(points), chart.BUCKETS + 1)
        self.assertTrue(all(low <= middle <= high for _, low, middle, high in points))


class ScenarioPart(unittest.TestCase):
    def test_episodes_are_played_and_sampled(self):
        with tempfile.TemporaryDirectory() as folder:
            told = scenario.play(os.environ["QXTERM_SCENARIO"], Path(folder), 1, 1, 6000, 0.05)
            rows = samples.rows(Path(folder) / "scenario.csv")
        self.assertEqual(told["failures"], [])
        self.assertGreaterEqual(told["events"], 6000)
        self.assertAlmostEqual(told["virtual"], 180, delta=20)
        self.assertGreater(len(rows), 15)
        self.assertAlmostEqual(rows[-1]["virtual"], 180, delta=20)
        # Between two sessions nothing is open.
        self.assertEqual({(row["forms"], row["sockets"], row["ports"], row["helpers"]) for row in rows}, {(1, 0, 0, 0)})

    def test_an_end_on_the_way_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            told = scenario.play("/bin/false", Path(folder), 1, 1, 100, 0.05)
        self.assertIn("ended with status 1", told["failures"][0])


if __name__ == "__main__":
    unittest.main()
