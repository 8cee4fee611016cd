#!/usr/bin/env python3
"""Tests of the tool behind "./tam mutate", which runs them first; "./tam check" runs them too."""

import sys
import tempfile
import unittest
from pathlib import Path

from cpp_changes import described, sites_of, tokens_of
from mutate_build import Build, together
from mutate_lane import DLL, NATIVE, Change, Lane, LinkError, failing_test


def changes_of(source):
    """Every change of a source as (line, what stood there, what stands there then)."""
    return [(site.line, site.old, new) for site in sites_of(source) for new in site.choices]


class SitesTest(unittest.TestCase):
    def test_swaps_operators(self):
        self.assertEqual([(1, "<", "<="), (1, "<", ">="), (1, "&&", "||"), (1, "!", "")],
                         changes_of("if (a < b && !c) {"))

    def test_leaves_templates_pointers_and_references(self):
        self.assertEqual([], changes_of("std::vector<int>* F(const T& a, U&& b, X<Y<int>> c);"))

    def test_leaves_comments_directives_and_what_only_the_compiler_reads(self):
        self.assertEqual([], changes_of('// a == b\n/* 1 */\n#include "x.h"\n#define A \\\n  1\n'))
        self.assertEqual([], changes_of('static_assert(A == 1, "one");\n[[nodiscard("x")]] int f;\n'))
        self.assertEqual([], changes_of("bool operator==(const X& a) const;\nvirtual void F() = 0;"))

    def test_counts_lines(self):
        self.assertEqual([(4, "true", "false")], changes_of("// one\n/* two\n three */\nx = true;"))

    def test_changes_numbers_by_one(self):
        self.assertEqual([(1, "10u", "11u"), (1, "10u", "9u")], changes_of("x = 10u;"))
        self.assertEqual([(1, "0", "1")], changes_of("x = 0;"))
        self.assertEqual([(1, "0xFF", "0x100"), (1, "0xFF", "0xFE")], changes_of("x = 0xFF;"))
        self.assertEqual([(1, "1'000", "1001"), (1, "1'000", "999")], changes_of("x = 1'000;"))
        self.assertEqual([(1, "0.5", "1.5")], changes_of("x = 0.5;"))
        self.assertEqual([(1, "-", ""), (1, "1", "2"), (1, "1", "0")], changes_of("x = -1;"))

    def test_changes_one_character_of_a_text(self):
        self.assertEqual([(1, 'L"abc"', 'L"acc"')], changes_of('x = L"abc";'))
        self.assertEqual([(1, 'L""', 'L"x"')], changes_of('x = L"";'))
        self.assertEqual([(1, 'L"\\n"', 'L"\\nx"')], changes_of('x = L"\\n";'))
        self.assertEqual([(1, 'L"a\\x41"', 'L"a\\x41x"')], changes_of('x = L"a\\x41";'))
        self.assertEqual([(1, "L'9'", "L'0'")], changes_of("x = L'9';"))
        self.assertEqual([(1, "L'\\0'", "L'\\1'")], changes_of("x = L'\\0';"))

    def test_drops_calls(self):
        source = "{ a.b(1)->c(d); }"
        self.assertIn((1, "a.b(1)->c(d)", ""), changes_of(source))
        self.assertEqual([], changes_of("{ Type name(value); }"))
        self.assertEqual([], changes_of("{ a = b(c); }"))

    def test_empties_returned_values(self):
        self.assertEqual([(1, "return a(b)", "return {}")], changes_of("return a(b);"))
        self.assertEqual([(1, "return true", "return {}"), (1, "true", "false")], changes_of("return true;"))
        self.assertEqual([(1, "0", "1")], changes_of("return 0;"))
        self.assertEqual([], changes_of("return;"))

    def test_turns_jumps(self):
        self.assertEqual([(1, "break", "continue"), (1, "break", "")], changes_of("{ break; }"))

    def test_turns_results(self):
        self.assertEqual([(1, "E_POINTER", "E_FAIL")], changes_of("x = E_POINTER;"))
        self.assertEqual([(1, "S_OK", "S_FALSE")], changes_of("return S_OK;"))
        self.assertEqual([(1, "min", "max")], changes_of("x = std::min(a, b);"))
        self.assertEqual([], changes_of("x = min;"))

    def test_knows_raw_texts(self):
        self.assertEqual(["raw", "sign"], [token.kind for token in tokens_of('LR"(a "b" // c)";')])


class ChangeTest(unittest.TestCase):
    def test_changes_the_one_place(self):
        source = "a == b;\nc == d;\n"
        change = Change(1, "x/y.cpp", sites_of(source)[1], "!=")
        self.assertEqual("a == b;\nc != d;\n", change.applied(source))
        self.assertEqual("x/y.cpp:2  == -> !=", str(change))

    def test_is_told_in_a_few_words(self):
        self.assertEqual("Draw(a, b) dropped", described("Draw(a,\n     b)", ""))
        self.assertEqual("return x -> return {}", described("return x", "return {}"))


class LinkTest(unittest.TestCase):
    def setUp(self):
        self.build = Build.__new__(Build)
        self.build.links = {"a.exe": ["g++", "-s", "x.obj", "y.obj", "-o", "a.exe", "libcom.a", "libcore.a"]}
        self.build.commands = {"x.obj": [], "y.obj": [], "core/z.obj": []}
        self.objects = {"y.obj": "/new/y", "core/z.obj": "/new/z"}

    def test_replaces_objects_and_those_of_libraries(self):
        self.assertEqual(["g++", "-s", "x.obj", "/new/y", "-o", "/b.exe", "/new/z", "libcom.a", "libcore.a"],
                         self.build.link_command("a.exe", self.objects, "/b.exe"))

    def test_puts_them_first_in_a_test_program(self):
        self.assertEqual(["g++", "-s", "/new/y", "/new/z", "x.obj", "-o", "/b.exe", "libcom.a", "libcore.a"],
                         self.build.test_link_command("a.exe", self.objects, "/b.exe"))


class TreeTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root, self.tree = Path(folder.name) / "root", Path(folder.name) / "lane/source"
        self.build = Build.__new__(Build)
        self.build.root, self.build.folder = self.root, self.root / "build/win32"
        for name in ("core", "com"):
            (self.root / name).mkdir(parents=True)
            (self.build.folder / "include" / name).mkdir(parents=True)
            (self.build.folder / "include" / name / name).symlink_to(self.root / name)

    def test_compiles_with_the_headers_of_the_other_tree(self):
        include = self.build.folder / "include/core"
        self.build.commands = {"x.obj": ["g++", f"-I{include}", f"-I{self.build.folder}/idl", "-o", "x.obj",
                                         f"{self.root}/com/x.cpp"]}
        self.assertEqual(["g++", f"-I{self.tree.parent}/include/core", f"-I{self.build.folder}/idl", "-o", "y.obj",
                          f"{self.tree}/com/x.cpp", "-w"],
                         self.build.compile_command("x.obj", self.tree, "y.obj"))

    def test_links_the_layers_of_the_other_tree(self):
        self.build.link_includes(self.tree)
        self.build.link_includes(self.tree)
        for name in ("core", "com"):
            self.assertEqual(self.tree / name, (self.tree.parent / "include" / name / name).readlink())


class TogetherTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        self.one, self.both = self.root / "tests/core/OneTest.cpp", self.root / "build/Unity/unity_0_cxx.cxx"
        for file, text in ((self.one, '#include "core/One.h"\n'), (self.both, f'#include "{self.one}"\n')):
            file.parent.mkdir(parents=True)
            file.write_text(text, encoding="utf-8")

    def test_knows_which_sources_are_compiled_as_one(self):
        self.assertEqual([self.one], together(self.both))
        self.assertEqual([self.one], together(self.one))

    def test_finds_the_test_of_a_header_among_them(self):
        build = Build.__new__(Build)
        build.root, build.named, build.sources_in = self.root, {}, {"unity.obj": ["tests/core/OneTest.cpp"]}
        self.assertEqual(["unity.obj"], build.tests_of("core/One.h"))
        self.assertEqual([], build.tests_of("core/Two.h"))


class BuildDouble:
    """A build of a DLL and a test program, of one source each."""

    def __init__(self, folder):
        self.root = self.folder = folder
        self.source_of, self.readers = {"x.obj": "x.cpp"}, {"x.cpp": ["x.obj"]}

    def parts_of(self, output):
        return {"x.obj"} if output in (DLL, "tests/a.exe") else set()

    def link_of(self, output):
        return ["x.obj"] if output == "tests/a.exe" else []

    def tests_of(self, _header):
        return []

    def test_link_command(self, _output, _objects, _target):
        return ["link"]


class LaneDouble(Lane):
    """A lane in which everything but the link of one output works."""

    def __init__(self, folder, failing):
        self.failing = failing
        self.tree, self.work, self.win32 = folder / "source", folder / "work", folder / "win32"
        self.windows, self.native = BuildDouble(folder / "build"), BuildDouble(folder / "native")
        self.native.parts_of = lambda output: {"x.obj"} if output == NATIVE[0] else set()
        self.good_dll = b"good"
        for file, text in (("source/x.cpp", "x = 1;"), ("work/good/O_Tam_id.dll", "good"), ("build/x.obj", "old"),
                           ("build/tests/a.exe", "test"), ("win32/tests/a.exe", "test")):
            (folder / file).parent.mkdir(parents=True, exist_ok=True)
            (folder / file).write_text(text, encoding="utf-8")

    def compile(self, _build, _output, target):
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text("new", encoding="utf-8")
        return True

    def run(self, command, _folder, _limit, output=None):
        if output:
            Path(output).write_text("undefined reference", encoding="utf-8")
        return 0

    def link(self, build, output, objects, target, command=None):
        target.parent.mkdir(parents=True, exist_ok=True)
        target.unlink(missing_ok=True)
        if output == self.failing:
            raise LinkError(f"{output} could not be linked")
        target.write_text("linked", encoding="utf-8")
        return target

    def run_program(self, _program, _limit):
        return 0, 1.0, ""

    def fresh_wine(self):
        pass


class JudgeTest(unittest.TestCase):
    def verdict(self, failing):
        with tempfile.TemporaryDirectory() as folder:
            lane = LaneDouble(Path(folder), failing)
            change = Change(1, "x.cpp", sites_of("x = 1;")[0], "2")
            outcome = lane.judge(change, [("tests/a.exe", 1.0, "key")], {})
            self.assertEqual("x = 1;", (lane.tree / "x.cpp").read_text(encoding="utf-8"))
            self.assertEqual("test", (lane.win32 / "tests/a.exe").read_text(encoding="utf-8"))
            self.assertEqual("good", (lane.win32 / DLL).read_text(encoding="utf-8"))
            return outcome.verdict

    def test_asks_the_programs_about_what_links(self):
        self.assertEqual("lived", self.verdict(None))

    def test_does_not_count_what_does_not_link(self):
        for output in (DLL, "tests/a.exe", NATIVE[0]):
            with self.subTest(output):
                self.assertEqual("does not compile", self.verdict(output))


class FailingTest(unittest.TestCase):
    def told(self, log):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "log")
            file.write_text(log, encoding="utf-8")
            return failing_test(file)

    def test_finds_the_first_that_failed(self):
        self.assertEqual("A/BTest.C/3", self.told("[ RUN      ] A/BTest.C/3\n[  FAILED  ] A/BTest.C/3, where x (1 ms)\n"))
        self.assertEqual("B.C", self.told("[ RUN      ] B.C\n[  SKIPPED ] B.C (0 ms)\n"))

    def test_finds_the_one_that_ended_the_program(self):
        self.assertEqual("B.D", self.told("[ RUN      ] B.C\n[       OK ] B.C (0 ms)\n[ RUN      ] B.D\nwine: fault\n"))

    def test_finds_none_where_all_passed(self):
        self.assertEqual("", self.told("[ RUN      ] B.C\n[       OK ] B.C (0 ms)\n[  PASSED  ] 1 test.\n"))


def passes():
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules[__name__])
    return unittest.TextTestRunner(verbosity=0, stream=sys.stderr).run(suite).wasSuccessful()


if __name__ == "__main__":
    sys.exit(0 if passes() else 1)
