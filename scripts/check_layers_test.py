#!/usr/bin/env python3
"""Tests of check_layers.py, over trees made for them."""
import sys
import unittest
from unittest import mock

import check_layers
from folder_case import FolderCase

TABLE = f"""Before.
{check_layers.BEGIN}
{check_layers.draw({"com": {"core"}})}
{check_layers.END}
"""


class CheckLayersTest(FolderCase):
    def setUp(self):
        super().setUp()
        self.write("docs/architecture.md", TABLE)
        self.write(".clang-tidy", f"HeaderFilterRegex: '({'|'.join(check_layers.MAY_SEE)})/[^/]*'\n")
        self.write("com/Dll.cpp", '#include "com/Dll.h"\n#include "core/Case.h"\n#include <windows.h>\n')

    def run_check(self, *arguments):
        """(status, what was printed)"""
        with mock.patch.object(check_layers, "ROOT", self.root), \
                mock.patch.object(sys, "argv", ["check_layers.py", *arguments]):
            return self.printed_by(check_layers.main)

    def test_passes_what_runs_downward(self):
        self.assertEqual(self.run_check(), (0, ""))

    def test_finds_an_upward_include(self):
        self.write("core/Case.h", '#include "com/Dll.h"\n')
        status, printed = self.run_check()
        self.assertEqual(status, 1)
        self.assertIn("core/Case.h: core/ may not see com/Dll.h\n", printed)

    def test_finds_a_path_around_the_layers(self):
        self.write("core/Case.h", '#include "../com/Dll.h"\n')
        self.assertEqual(self.run_check(), (1, "core/Case.h: ../com/Dll.h goes around the layers\n"))

    def test_finds_a_table_of_yesterday(self):
        self.write("types/CSNVTType.h", '#include "common/ErrorReport.h"\n')
        self.assertEqual(self.run_check(),
                         (1, "docs/architecture.md: the table of layers is not today's (--draw prints it)\n"))

    def test_finds_headers_that_clang_tidy_does_not_look_at(self):
        self.write(".clang-tidy", "HeaderFilterRegex: '(com|core)/[^/]*'\n")
        status, printed = self.run_check()
        self.assertEqual(status, 1)
        self.assertIn(".clang-tidy: HeaderFilterRegex is to begin with (core|drawing|", printed)

    def test_knows_a_folder_within_another(self):
        self.write("view/model/Row.h", '#include "view/model/History.h"\n#include "com/Dll.h"\n')
        status, printed = self.run_check()
        self.assertEqual(status, 1)
        self.assertIn("view/model/Row.h: view/model/ may not see com/Dll.h\n", printed)
        self.assertNotIn("History", printed)

    def test_draws_the_table(self):
        status, printed = self.run_check("--draw")
        self.assertEqual(status, 0)
        self.assertIn(f"| `com/` | {check_layers.WHAT['com']} | `core/` |\n", printed)


if __name__ == "__main__":
    unittest.main()
