#!/usr/bin/env python3
"""Tests of check_suites.py, over folders of tests made for them."""
import unittest

import check_suites
from folder_case import FolderCase


class CheckSuitesTest(FolderCase):
    def setUp(self):
        super().setUp()
        self.write("points/ValveTest.cpp", "TEST(ValveTest, Opens) {}\n")

    def run_check(self):
        """(status, what was printed)"""
        return self.printed_by(lambda: check_suites.main([str(self.root)]))

    def test_passes_a_suite_that_is_called_as_its_file(self):
        self.assertEqual(self.run_check(), (0, ""))

    def test_passes_several_set_ups_of_one_file(self):
        for macro in ("TEST_F", "TEST_P", "TYPED_TEST"):
            with self.subTest(macro):
                self.write("points/PumpTest.cpp", f"TEST(PumpTest, Runs) {{}}\n{macro}(PumpSpeedTest, Stays) {{}}\n")
                self.assertEqual(self.run_check(), (0, ""))

    def test_finds_a_suite_of_another_name(self):
        self.write("points/PumpTest.cpp", "TEST_F(MotorTest, Runs) {}\n")
        self.assertEqual(self.run_check(),
                         (1, "points/PumpTest.cpp: the suite MotorTest is called otherwise than its file\n"))

    def test_finds_a_suite_that_does_not_end_in_test(self):
        self.write("points/PumpTest.cpp", "TEST(PumpSpeed, Stays) {}\n")
        self.assertEqual(self.run_check(),
                         (1, "points/PumpTest.cpp: the suite PumpSpeed is called otherwise than its file\n"))

    def test_finds_a_suite_that_a_longer_name_of_a_file_claims(self):
        self.write("points/PumpTest.cpp", "TEST(PumpSpeedTest, Stays) {}\n")
        self.write("points/PumpSpeedTest.cpp", "TEST(PumpSpeedTest, Rises) {}\n")
        self.assertEqual(
            self.run_check(),
            (1, "points/PumpTest.cpp: the suite PumpSpeedTest belongs to PumpSpeedTest.cpp by its name\n"))

    def test_takes_each_folder_by_itself(self):
        self.write("types/PumpTest.cpp", "TEST(PumpSpeedTest, Stays) {}\n")
        self.write("points/PumpSpeedTest.cpp", "TEST(PumpSpeedTest, Rises) {}\n")
        self.assertEqual(self.run_check(), (0, ""))

    def test_finds_tests_in_a_file_that_is_called_otherwise(self):
        self.write("points/Pump.cpp", "TEST_F(PumpTest, Runs) {}\n")
        self.assertEqual(self.run_check(),
                         (1, "points/Pump.cpp: has tests (PumpTest), and its name does not end in Test\n"))

    def test_passes_a_program_that_is_no_test(self):
        self.write("points/Pictures.cpp", "TEST_F(Pictures, AreTaken) {}\n")
        self.assertEqual(self.run_check(), (0, ""))

    def test_finds_a_file_without_tests(self):
        self.write("points/PumpTest.cpp", "int main() {}\n")
        self.assertEqual(self.run_check(), (1, "points/PumpTest.cpp: has no tests\n"))

    def test_fails_where_there_are_no_tests_at_all(self):
        (self.root / "points/ValveTest.cpp").unlink()
        self.assertEqual(self.run_check(), (1, f"{self.root}: there are no tests\n"))


if __name__ == "__main__":
    unittest.main()
