#!/usr/bin/env python3
"""Tests of check_version.py, over trees made for them."""
import unittest

import check_version
from folder_case import FolderCase

MANIFEST = '<assembly manifestVersion="1.0">\n<assemblyIdentity type="win32" name="bench" version="{}" a="*"/>\n' \
    '<assemblyIdentity type="win32" name="Microsoft.Windows.Common-Controls" version="6.0.0.0"/></assembly>\n'
LIBRARY = '[\n    version({}),\n    helpstring("Valves {}: all of them")\n]\n'


class CheckVersionTest(FolderCase):
    def setUp(self):
        super().setUp()
        self.write("CMakeLists.txt", "cmake_minimum_required(VERSION 3.25)\nproject(O_Tam_id VERSION 2.5.7 LANGUAGES CXX)\n")
        self.write("docs/changelog.md", "## [Unreleased]\n\n## [2.5.7]\n\n## [1.0.0]\n")
        self.write("bench/bench.manifest", MANIFEST.format("2.5.7.0"))
        self.write("idl/Valves.idl", LIBRARY.format("2.5", "2.5"))
        self.write("bench/bench.rc", 'FILEVERSION TAM_VERSION_NUMBERS\nVALUE "FileVersion", TAM_VERSION_TEXT\n')

    def run_check(self):
        """(status, what was printed)"""
        return self.printed_by(lambda: check_version.main([str(self.root)]))

    def test_reads_the_version_of_the_project(self):
        self.assertEqual(check_version.project_version(self.root), "2.5.7")

    def test_passes_a_tree_of_one_version(self):
        self.assertEqual(self.run_check(), (0, ""))

    def test_finds_each_place_that_lags_behind(self):
        cases = (
            ("bench/bench.manifest", MANIFEST.format("2.5.6.0"), "version 2.5.6.0, wanted 2.5.7.0"),
            ("idl/Valves.idl", LIBRARY.format("2.4", "2.5"), "version 2.4, wanted 2.5"),
            ("idl/Pumps.idl", LIBRARY.format("2.5", "2.4"), "version 2.4, wanted 2.5"),
            ("bench/bench.rc", "FILEVERSION 2,5,7,0\n", "version 2,5,7,0, wanted the macros of version.h"),
            ("docs/changelog.md", "## [2.5.6]\n\n## [2.5.7]\n", "version 2.5.6, wanted 2.5.7"),
            ("docs/changelog.md", "## [Unreleased]\n", "version none, wanted 2.5.7"),
        )
        for name, text, finding in cases:
            with self.subTest(finding, name=name):
                path = self.root / name
                before = path.read_text(encoding="utf-8") if path.exists() else ""
                self.write(name, text)
                self.assertEqual(self.run_check(), (1, f"{name}: {finding}\n"))
                self.write(name, before)

    def test_leaves_what_was_built_alone(self):
        self.write("build/win32/old.manifest", MANIFEST.format("0.1.0.0"))
        self.assertEqual(self.run_check(), (0, ""))


if __name__ == "__main__":
    unittest.main()
