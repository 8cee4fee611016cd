#!/usr/bin/env python3
"""Shows small faulty and faultless files to check_includes.py and expects its findings."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from check_includes import check, mended
from standard_names import NAMES_OF, headers_by_name


class CheckIncludesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def findings(self, text, name="Thing.h", **others):
        for stem, header in others.items():
            (self.folder / f"{stem}.h").write_text(header, encoding="utf-8")
        return check(self.folder / name, text)[0]

    def expect_clean(self, text, name="Thing.h", **others):
        self.assertEqual(self.findings(text, name, **others), [])

    def test_tells_a_name_without_its_header(self):
        self.assertEqual(self.findings("#include <string>\n\nstd::uint8_t ByteOf(std::string text);\n"),
                         [(3, "uses uint8_t without <cstdint>")])

    def test_tells_each_header_once_at_its_first_use(self):
        self.assertEqual(self.findings("std::string a;\nstd::string b;\nauto c = std::to_string(1);\n"),
                         [(1, "uses string without <string>")])

    def test_tells_a_header_that_nothing_is_used_of(self):
        self.assertEqual(self.findings("#include <string>\n#include <vector>\nstd::string text;\n"),
                         [(2, "includes <vector> and uses nothing of it")])

    def test_tells_a_header_that_stands_twice(self):
        self.assertEqual(self.findings("#include <string>\n#include <string>\nstd::string text;\n"),
                         [(1, "includes <string> twice")])

    def test_tells_a_name_that_the_table_lacks(self):
        self.assertEqual(self.findings("std::no_such_name x;\n"),
                         [(1, "std::no_such_name is not in scripts/standard_names.py")])

    def test_takes_any_header_that_declares_a_name(self):
        for header in ("cstddef", "cstdio", "cstdlib"):
            extra = {"cstdio": "std::puts(text);", "cstdlib": "std::abort();"}.get(header, "")
            self.expect_clean(f"#include <{header}>\nstd::size_t count;\n{extra}\n")

    def test_takes_what_the_standard_lets_a_header_include(self):
        self.expect_clean("#include <vector>\nstd::vector<int> Of(std::initializer_list<int> all);\n")
        self.expect_clean("#include <iostream>\nvoid Print(std::ostream& out = std::cout);\n")

    def test_takes_no_header_that_only_happens_to_include_another(self):
        self.assertEqual(self.findings("#include <functional>\nstd::function<void(std::string)> f;\n"),
                         [(2, "uses string without <string>")])

    def test_takes_no_header_of_the_project_for_a_standard_one(self):
        self.assertEqual(self.findings('#include "Other.h"\nstd::string text;\n', Other="#include <string>\n"),
                         [(2, "uses string without <string>")])

    def test_lets_a_source_lean_on_its_own_header(self):
        header = "#include <string>\nstd::string Text();\n"
        text = '#include "Thing.h"\nstd::string Text() { return {}; }\n'
        self.expect_clean(text, "Thing.cpp", Thing=header)
        self.expect_clean(text, "Thing_Part.cpp", Thing=header)
        self.assertEqual(self.findings(text, "ThingTest.cpp", Thing=header),
                         [(2, "uses string without <string>")])

    def test_finds_the_own_header_by_its_path_in_the_project(self):
        (self.folder / "common").mkdir()
        (self.folder / "common" / "Thing.h").write_text("#include <string>\n", encoding="utf-8")
        source = '#include "common/Thing.h"\nstd::string text;\n'
        self.assertEqual(check(self.folder / "common" / "Thing.cpp", source)[0], [])

    def test_counts_no_comments_and_no_texts(self):
        self.expect_clean("// std::string\n/* std::vector\n std::map */\nauto a = \"std::set\";\n"
                          "auto b = R\"x(std::list \" )\" std::deque)x\";\nauto c = '\"'; auto d = \"\\\"std::span\";\n")

    def test_sees_code_behind_what_looks_like_a_text(self):
        for before in ("int a = 1'000'000;", "char a = '\"';", 'auto a = "//";', "char a = '\\'';", 'auto a = u8"\\\\";'):
            self.assertEqual(self.findings(f"{before} std::string text;\n"), [(1, "uses string without <string>")])

    def test_knows_names_in_inner_namespaces(self):
        self.assertEqual(self.findings("bool a = std::ranges::any_of(b, c);\n"),
                         [(1, "uses ranges without <algorithm>")])
        self.assertEqual(self.findings("auto a = std::ranges::next(b);\n"),
                         [(1, "uses ranges::next without <iterator>")])
        self.assertEqual(self.findings("std::chrono::seconds a;\n"), [(1, "uses chrono without <chrono>")])

    def test_leaves_names_of_others_alone(self):
        self.expect_clean("my::std::string a; string b; tam::size_t c; row.errno; row->assert(d); Xstd::string e;\n")

    def test_knows_what_stands_without_std(self):
        self.assertEqual(self.findings("size_t a = INT_MAX;\n"),
                         [(1, "uses INT_MAX without <climits>"), (1, "uses size_t without <cstddef>")])

    def test_knows_what_has_no_name(self):
        self.assertEqual(self.findings("void f() { for (int x : {1, 2}) g(x); }\n"),
                         [(1, "uses initializer_list without <initializer_list>")])
        self.assertEqual(self.findings("auto operator<=>(const A&) const = default;\n"),
                         [(1, "uses operator<=> without <compare>")])
        self.expect_clean("#include <new>\nvoid f(void* place) { new (place) int; }\n")

    def test_takes_no_member_list_for_a_loop_over_a_list(self):
        self.expect_clean("void f() { for (int x : all) { g(x); } }\nstruct A { A() : b{1} {} int b; };\n")

    def test_leaves_headers_of_others_alone(self):
        self.expect_clean("#include <windows.h>\n#include <gtest/gtest.h>\n")

    def test_mends_what_it_finds(self):
        for text in (
            "#pragma once\n\nstd::string text;\n",
            '#pragma once\n\n#include "Other.h"\n\nstd::string text;\n',
            "#pragma once\n\n#include <vector>\n\nstd::string text;\n",
            "#pragma once\n\n#include <windows.h>\n\n#include <map>\n#include <vector>\n\nstd::vector<std::string> texts;\n",
            "std::string text;\n",
        ):
            file = self.folder / "Thing.h"
            _, lacking, unused = check(file, text)
            result = mended(text, lacking, unused)
            self.assertEqual(check(file, result)[0], [])
            self.assertIn("#include <string>\n", result)
            self.assertNotIn("<map>", result)

    def test_mends_by_command_headers_before_their_sources(self):
        script = Path(__file__).with_name("check_includes.py")
        files = {"Thing.cpp": '#include "Thing.h"\nstd::string text;\n', "Thing.h": "#pragma once\nstd::string Text();\n"}
        paths = [self.folder / name for name in files]
        for path in paths:
            path.write_text(files[path.name], encoding="utf-8")

        def run(*options):
            command = [sys.executable, str(script), *options, *map(str, paths)]
            run = subprocess.run(command, capture_output=True, text=True, check=False)
            return run.returncode, run.stdout

        header, source = self.folder / "Thing.h", self.folder / "Thing.cpp"
        self.assertEqual(run(), (1, f"{header}:2: uses string without <string>\n"
                                    f"{source}:2: uses string without <string>\n"))
        self.assertEqual(run("--fix"), (0, ""))
        self.assertEqual(run(), (0, ""))
        self.assertEqual(source.read_text(encoding="utf-8"), files["Thing.cpp"])

    def test_has_a_header_for_each_name(self):
        for header, names in NAMES_OF.items():
            self.assertEqual(len(names.split()), len(set(names.split())), header)
        self.assertEqual(headers_by_name()["size_t"][0], "cstddef")
        self.assertEqual(headers_by_name()["begin"][0], "iterator")
        self.assertEqual(headers_by_name()["swap"][0], "utility")
        self.assertEqual(headers_by_name()["hash"][0], "functional")


if __name__ == "__main__":
    unittest.main()
