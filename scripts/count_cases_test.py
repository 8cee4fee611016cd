#!/usr/bin/env python3
"""Tests of count_cases.py, over reports made for them."""
import contextlib
import io
import pathlib
import tempfile
import unittest

import count_cases


class CountCasesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def report(self, place, program, cases):
        path = self.root / place / f"{program}.xml"
        path.parent.mkdir(parents=True, exist_ok=True)
        suite = "".join(f'<testcase name="Case{number}"/>' for number in range(cases))
        path.write_text(f"<testsuites><testsuite>{suite}</testsuite></testsuites>", encoding="utf-8")

    def run_count(self):
        """(status, what was printed)"""
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            return count_cases.main([str(self.root)]), printed.getvalue()

    def test_counts_the_cases_of_a_program_once_and_its_runs_each(self):
        self.report("point", "points_tests", 3)
        self.report("comma", "points_tests", 3)
        self.report("point", "fault_tests", 2)
        self.assertEqual(self.run_count(), (0, "fault_tests      2  point\n"
                                               "points_tests     3  comma, point\n"
                                               "                 5  and 8 runs of them\n"))

    def test_lets_a_native_program_have_other_cases(self):
        self.report("native", "core_tests", 2)
        self.report("point", "core_tests", 3)
        status, printed = self.run_count()
        self.assertEqual(status, 0)
        self.assertIn("core_tests     3  native, point\n", printed)

    def test_tells_a_program_that_has_other_cases_in_another_place(self):
        self.report("point", "points_tests", 3)
        self.report("comma", "points_tests", 2)
        status, printed = self.run_count()
        self.assertEqual(status, 1)
        self.assertIn("points_tests: has other numbers of cases in two places", printed)

    def test_tells_that_there_are_no_reports(self):
        self.assertEqual(self.run_count(), (1, f"{self.root}: no reports. Run ./tam test first.\n"))


if __name__ == "__main__":
    unittest.main()
