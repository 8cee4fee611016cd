#!/usr/bin/env python3
"""Shows small trees with faults to check_docs.py and expects its findings."""
import tempfile
import unittest
from pathlib import Path

from check_docs import anchor, check

DECISIONS = """# Points

About points.

## One rule

**Rule.** It holds.

**Why.** It must.

**Where.** `points/A.cpp`, `points/`. Tests: `ATest.Holds`, the suite `ATest`; `./tam check`.
"""
INDEX = """# Decisions

Each has three paragraphs.

## [Points](points.md)

About points.

- [One rule](points.md#one-rule)
"""


class CheckDocsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.put("README.md", "# Top\n\n[why](docs/decisions/README.md#points)\n")
        self.put("docs/decisions/README.md", INDEX)
        self.put("docs/decisions/points.md", DECISIONS)
        self.put("points/A.cpp", "")
        self.put("tests/points/ATest.cpp", "TEST_F(ATest, Holds) {\n}\nTEST(ATest,\n     Too) {\n}\n")

    def put(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def decisions(self):
        return (self.root / "docs/decisions/points.md").read_text(encoding="utf-8")

    def test_finds_nothing_in_a_tree_without_faults(self):
        self.assertEqual(check(self.root), [])

    def test_finds_tests_and_programs_that_documents_do_not_name_as_they_are(self):
        self.put("scripts/test-list", "# head\na_tests native\nb_tests point 600\n")
        self.put("tests/points/Fixture.h", "class HeldTest : public Test {};\n")
        self.put("docs/testing.md", "`a_tests`, `ATest.Holds`, `HeldTest`, `FooTest`, `accHitTest`, `BTest`\n")
        self.assertEqual(
            check(self.root),
            ["docs/testing.md: BTest is not there", "docs/testing.md: b_tests of scripts/test-list is not told"],
        )

    def test_finds_errors_that_the_guide_does_not_tell(self):
        self.put("com/A.h", "return E_FAIL; // or DISP_E_OVERFLOW, RPC_E_DISCONNECTED\nconst int SCALE_E_FAIL = 1;\n")
        self.put("tests/com/B.cpp", "E_ABORT\n")
        self.put("idl/OrvHost.idl", "errOne = 0x80040401,\nerrTwo = 0x80040402\n")
        self.put("docs/host-guide.md", "# Guide\n\nE_FAIL 0x80040401\n\n## Errors\n\n0x80040402, `DISP_E_OVERFLOW`\n")
        self.assertEqual(
            check(self.root),
            ["docs/host-guide.md: 0x80040401 is not told", "docs/host-guide.md: E_FAIL is not told"],
        )

    def test_finds_links_to_nowhere(self):
        self.put("README.md", "[a](docs/none.md) [b](docs/decisions/points.md#two) [c](https://example.org/x)\n")
        self.assertEqual(
            check(self.root),
            ["README.md: docs/none.md is not there", "README.md: docs/decisions/points.md#two: there is no such heading"],
        )

    def test_finds_a_missing_paragraph(self):
        self.put("docs/decisions/points.md", DECISIONS.replace("**Why.** It must.\n\n", ""))
        self.assertEqual(
            check(self.root), ["docs/decisions/points.md: One rule: the paragraphs are not Rule, Why and Where"]
        )

    def test_finds_files_and_tests_that_are_not_there(self):
        text = DECISIONS.replace("points/A.cpp", "points/B.cpp").replace("ATest.Holds", "ATest.Falls")
        self.put("docs/decisions/points.md", text.replace("suite `ATest`", "suite `BTest`"))
        where = "docs/decisions/points.md: One rule: "
        self.assertEqual(
            check(self.root, fixes=True),
            [f"{where}{name} is not there" for name in ("points/B.cpp", "ATest.Falls", "BTest")],
        )

    def test_follows_what_has_moved(self):
        (self.root / "points/A.cpp").rename(self.root / "docs/A.cpp")
        self.put("tests/points/ATest.cpp", "TEST(AOtherTest, Holds) {}\nTEST(ATest, Too) {}\n")
        self.assertEqual(
            check(self.root),
            [
                "docs/decisions/points.md: One rule: points/A.cpp is not there; docs/A.cpp is",
                "docs/decisions/points.md: One rule: ATest.Holds is not there; AOtherTest.Holds is",
            ],
        )
        self.assertEqual(check(self.root, fixes=True), [])
        self.assertIn("`docs/A.cpp`, `points/`. Tests: `AOtherTest.Holds`", self.decisions())

    def test_follows_nothing_that_two_places_have(self):
        self.put("docs/decisions/points.md", DECISIONS.replace("points/A.cpp", "types/A.cpp"))
        self.put("docs/A.cpp", "")
        self.assertEqual(
            check(self.root, fixes=True), ["docs/decisions/points.md: One rule: types/A.cpp is not there"]
        )

    def test_writes_the_list_of_decisions(self):
        self.put("docs/decisions/points.md", DECISIONS + DECISIONS.split("\n\n", 2)[2].replace("One", "Another"))
        self.assertEqual(
            check(self.root), ["docs/decisions/README.md: the list of decisions is old; check_docs.py --fix writes it"]
        )
        self.assertEqual(check(self.root, fixes=True), [])
        index = (self.root / "docs/decisions/README.md").read_text(encoding="utf-8")
        self.assertEqual(index, INDEX + "- [Another rule](points.md#another-rule)\n")

    def test_names_headings_as_links_do(self):
        self.assertEqual(anchor("`A::b`, \"c\" [d](e.md)"), "ab-c-d")


if __name__ == "__main__":
    unittest.main()
