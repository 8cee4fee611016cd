#!/usr/bin/env python3
"""Compares the tests of two commits: their lines, and which cases are gone.

    compare_cases.py BEFORE AFTER

A case counts as written: one of a typed suite once, however many types it runs for. One
that is in another suite now is kept; "gone" is a case whose name no suite of AFTER has.
Prints a line a figure, before and after, then the cases that are gone. Ends with 1 when
one of the commits has no cases.
"""

import re
import subprocess
import sys

CASE = re.compile(r"^\s*(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)
FOLDER = "tests"
KIT = "tests/support/"


def git(*arguments):
    return subprocess.run(["git", *arguments], check=True, capture_output=True).stdout


def sources_of(commit):
    """The C++ sources of the tests: path -> text."""
    names = git("ls-tree", "-r", "-z", "--name-only", commit, "--", FOLDER).decode().split("\0")
    paths = [name for name in names if name.endswith((".cpp", ".h"))]
    return {path: git("show", f"{commit}:{path}").decode(errors="replace") for path in paths}


def figures_of(sources):
    lines = {path: text.splitlines() for path, text in sources.items()}
    return {
        "lines of tests": sum(map(len, lines.values())),
        "of them in the kit": sum(len(text) for path, text in lines.items() if path.startswith(KIT)),
        "lines with E_NOTIMPL": sum("E_NOTIMPL" in line for text in lines.values() for line in text),
        "cases": len(cases_of(sources)),
    }


def cases_of(sources):
    return [case for text in sources.values() for case in CASE.findall(text)]


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    before, after = (sources_of(commit) for commit in arguments)
    old, new = figures_of(before), figures_of(after)
    for figure, count in old.items():
        print(f"{figure:22} {count:7} {new[figure]:7}")
    names = {name for _, name in cases_of(after)}
    for suite, name in sorted(cases_of(before)):
        if name not in names:
            print(f"gone: {suite}.{name}")
    return 0 if old["cases"] and new["cases"] else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
