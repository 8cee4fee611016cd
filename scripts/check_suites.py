#!/usr/bin/env python3
"""Checks that a test suite is found by its name.

    check_suites.py [TESTS_FOLDER]

The tests of a suite stand in one file, and the suite is called as the file is:
tests of FooTest.cpp are of the suite FooTest, or, where one file has several
set-ups, of suites that begin with Foo and end with Test. Where more than one
file could be meant, it is the one with the longest name. A file that ends in
Test.cpp has tests. Another one has none, but for a program on GoogleTest that is no
test; its suite has the file's whole name.

Prints what is not so, a line each, and ends with 1 when there is anything.
"""

import pathlib
import re
import sys

TEST = re.compile(r"^\s*(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+)\s*,", re.MULTILINE)
ENDING = "Test"


def suites_of(path):
    return sorted(set(TEST.findall(path.read_text(encoding="utf-8"))))


def findings_of(folder):
    """Of one folder; suites in different folders have nothing to do with each other."""
    tests = {path.stem: suites_of(path) for path in sorted(folder.glob("*.cpp"))}
    files = [stem for stem in tests if stem.endswith(ENDING)]
    for stem, suites in tests.items():
        name = f"{folder.name}/{stem}.cpp"
        if stem not in files and suites and suites != [stem]:
            yield f"{name}: has tests ({', '.join(suites)}), and its name does not end in {ENDING}"
        if stem in files and not suites:
            yield f"{name}: has no tests"
        for suite in suites if stem in files else []:
            owners = [file for file in files if suite.startswith(file.removesuffix(ENDING))]
            owner = max(owners, key=len, default=None)
            if not suite.endswith(ENDING) or owner is None:
                yield f"{name}: the suite {suite} is called otherwise than its file"
            elif owner != stem:
                yield f"{name}: the suite {suite} belongs to {owner}.cpp by its name"


def main(arguments):
    root = pathlib.Path(arguments[0]) if arguments else pathlib.Path(__file__).parent.parent / "tests"
    folders = sorted(path for path in root.rglob("*") if path.is_dir())
    if not any(path for folder in folders for path in folder.glob(f"*{ENDING}.cpp")):
        print(f"{root}: there are no tests")
        return 1
    findings = [finding for folder in folders for finding in findings_of(folder)]
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
