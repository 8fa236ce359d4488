#!/usr/bin/env python3
"""What benchmarks/report.py makes of measured times, and whether the page on performance shows what
was recorded.

usage: report_test.py ROOT
"""

import contextlib
import io
import json
import pathlib
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
sys.path.insert(0, str(ROOT / "benchmarks"))

import report  # noqa: E402


def row(**changes):
    return report.Row("a row", "engine", "measure", "floor", 1.5, **changes)


def result(ratio, **changes):
    return report.result_of(row(**changes), {"measure": ratio, "floor": 1.0})


class Results(unittest.TestCase):
    def test_meet_a_goal_up_to_it(self):
        self.assertTrue(result(1.5)["met"])
        self.assertFalse(result(1.51)["met"])

    def test_meet_a_goal_of_being_faster_from_it_on(self):
        self.assertTrue(result(1.5, faster=True)["met"])
        self.assertFalse(result(1.49, faster=True)["met"])

    def test_without_a_goal_are_neither_met_nor_missed(self):
        without = report.Row("", "set", "measure", "floor")
        self.assertIsNone(report.result_of(without, {"measure": 2.0, "floor": 1.0})["met"])

    def test_may_be_computed_from_several_medians(self):
        computed = report.Row("", "build", report.index_build, "parse/patterns", 0.25)
        medians = {"build/patterns": 5.0, "build/urls": 3.0, "parse/patterns": 8.0}
        self.assertEqual(report.result_of(computed, medians)["ratio"], 0.25)


class Checks(unittest.TestCase):
    def check(self, now, before, **changes):
        self.printed = io.StringIO()
        recorded = {"rows": [result(before, **changes)]}
        with contextlib.redirect_stdout(self.printed):
            return report.check([result(now, **changes)], recorded, 0.25)

    def test_pass_what_is_as_good_as_recorded(self):
        self.assertEqual(self.check(1.25, 1.0), 0)
        self.assertEqual(self.check(0.5, 1.0), 0)

    def test_find_what_is_worse_by_more_than_the_tolerance(self):
        self.assertEqual(self.check(1.26, 1.0), 1)
        self.assertIn("worse than recorded: a row: 1.26, was 1", self.printed.getvalue())

    def test_find_what_is_less_faster(self):
        self.assertEqual(self.check(0.8, 1.0, faster=True), 0)
        self.assertEqual(self.check(0.79, 1.0, faster=True), 1)

    def test_name_what_was_not_recorded(self):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            self.assertEqual(report.check([result(1.0)], {"rows": []}, 0.25), 0)
        self.assertEqual(printed.getvalue(), "not recorded: a row\n")


class Page(unittest.TestCase):
    recorded = json.loads(report.RECORDED.read_text(encoding="utf-8"))
    page = (ROOT / "docs" / "performance.md").read_text(encoding="utf-8")

    def test_shows_the_recorded_table(self):
        self.assertIn(f"\n```text\n{report.table(self.recorded['rows'])}\n```\n", self.page)

    def test_names_the_day_of_the_record(self):
        self.assertIn(self.recorded["date"], self.page)

    def test_has_a_record_of_every_row(self):
        titles = [row["title"] for row in self.recorded["rows"]]
        self.assertEqual(titles, [row.title for row in report.ROWS])


if __name__ == "__main__":
    unittest.main()
