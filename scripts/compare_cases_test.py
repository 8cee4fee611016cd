#!/usr/bin/env python3
"""Tests of compare_cases.py, over a repository made for them."""
import os
import subprocess
import unittest

import compare_cases
from folder_case import FolderCase


class CompareCasesTest(FolderCase):
    def setUp(self):
        super().setUp()
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.root)
        self.git("init", "-q")

    def git(self, *arguments):
        subprocess.run(["git", "-c", "user.name=n", "-c", "user.email=e", *arguments], check=True)

    def commit(self, tag, files):
        for name, text in files.items():
            self.write(name, text)
        self.git("add", "-A")
        self.git("commit", "-qm", tag)
        self.git("tag", tag)

    def compare(self):
        """(status, what was printed)"""
        return self.printed_by(lambda: compare_cases.main(["old", "new"]))

    def test_counts_lines_and_cases_and_names_what_is_gone(self):
        self.commit("old", {"tests/points/PumpTest.cpp": "TEST(PumpTest, Runs) {}\nTEST_F(PumpTest, Stops) {}\n",
                            "tests/points/Double.h": "int f() { return E_NOTIMPL; }\n",
                            "points/Pump.cpp": "TEST(NotATest, OfOurs) {}\n"})
        self.commit("new", {"tests/points/PumpTest.cpp": "TYPED_TEST(MachineTest, Runs) {}\n",
                            "tests/points/Double.h": "",
                            "tests/support/Recorder.h": "\n\n"})
        self.assertEqual(self.compare(), (0, "lines of tests               3       3\n"
                                             "of them in the kit           0       2\n"
                                             "lines with E_NOTIMPL         1       0\n"
                                             "cases                        2       1\n"
                                             "gone: PumpTest.Stops\n"))

    def test_does_not_compare_where_there_are_no_cases(self):
        self.commit("old", {"tests/points/PumpTest.cpp": "TEST(PumpTest, Runs) {}\n"})
        self.commit("new", {"tests/points/PumpTest.cpp": "int main() {}\n"})
        self.assertEqual(self.compare()[0], 1)


if __name__ == "__main__":
    unittest.main()
