#!/usr/bin/env python3
"""Checks that each file includes the standard headers whose names it uses, and no others.

    check_includes.py [--fix] FILE...

A header or source that leans on another header for <cstdint> compiles here and fails with the next release of a
compiler. A source may lean on its own header (com/Dom.h for com/Dom.cpp and common/Dom_Write.cpp) and on
nothing else. Names in comments, in texts and after no "std::" do not count, but for the macros and types of C.
With --fix the include lines are put in or taken out; clang-format puts them in order. Exits 1 when there are findings.
"""

import argparse
import re
import sys
from pathlib import Path

from standard_names import INCLUDED_BY, NAMES_OF, WITHOUT_STD, headers_by_name

HEADERS = headers_by_name()

# What is no code. A number comes first: a digit separator opens no character.
NO_CODE = re.compile(
    r"""(?P<number>(?<!\w)\.?\d(?:[eEpP][+-]|'\w|[\w.])*)
      | //(?:\\\n|[^\n])*
      | /\*.*?\*/
      | (?:u8|[uUL])?R"(?P<fence>[^()\\\s]*)\(.*?\)(?P=fence)"
      | "(?:\\.|[^"\\\n])*"
      | '(?:\\.|[^'\\\n])*'""",
    re.DOTALL | re.VERBOSE,
)
INCLUDE = re.compile(r"^[ \t]*#[ \t]*include[ \t]*(<[^>\n]+>|\"[^\"\n]+\")[^\n]*$", re.MULTILINE)
USE = re.compile(r"(?<![\w:])(?:::\s*)?(std|abi)\s*::\s*(\w+)(?:\s*::\s*(\w+))?")
WORD = re.compile(r"(?<![\w:.>])(?:" + "|".join(sorted(WITHOUT_STD)) + r")\b")
THREE_WAY = re.compile(r"<=>")
# for (auto x : {1, 2}): the list is a std::initializer_list.
LOOP_OVER_LIST = re.compile(r"\bfor\s*\([^;{}]*[^:]:\s*\{")
# new (place) T; new (std::nothrow) T is seen by its name.
PLACEMENT_NEW = re.compile(r"\bnew\s*\(|\boperator\s+(?:new|delete)\b")


def code_of(text):
    """The text with blanks for comments and texts; each line keeps its number."""
    return NO_CODE.sub(lambda m: m[0] if m["number"] else re.sub(r"[^\n]", " ", m[0]), text)


def includes_of(text):
    """The standard headers that a text includes, and its own headers."""
    names = [match[1] for match in INCLUDE.finditer(text)]
    standard = [name[1:-1] for name in names if name[0] == "<" and name[1:-1] in NAMES_OF]
    return standard, [name[1:-1] for name in names if name[0] == '"']


def uses_of(text):
    """Name -> the offset of its first use. An unknown name after std:: is there too."""
    code = code_of(text)
    found = []
    for match in USE.finditer(code):
        space, name, inner = match.groups()
        if space == "abi":
            name = "abi::"
        elif name == "ranges":
            qualified = f"ranges::{inner}"
            name = qualified if qualified in HEADERS else "ranges::"
        elif name == "operator":
            continue
        found.append((match.start(), name))
    found += [(match.start(), match[0]) for match in WORD.finditer(code)]
    found += [(match.start(), "operator<=>") for match in THREE_WAY.finditer(code)]
    found += [(match.start(), "initializer_list") for match in LOOP_OVER_LIST.finditer(code)]
    uses = {}
    for offset, name in sorted(found):
        uses.setdefault(name, offset)
    return uses


def own_header(file, includes):
    """The header of a source's own, such as Dom.h of Dom.cpp and of Dom_Write.cpp; None when there is none."""
    if file.suffix != ".cpp":
        return None
    for include in includes:
        header = Path(include)
        if file.stem == header.stem or file.stem.startswith(header.stem + "_"):
            for folder in (file.parent, *file.parents):
                if (folder / header).is_file() and (folder / header).parent.resolve() == file.parent.resolve():
                    return folder / header
    return None


def given_by(headers):
    """The headers with those that they are promised to include."""
    return set(headers).union(*(INCLUDED_BY.get(header, ()) for header in headers))


def check(file, text):
    """Findings as (line, words); the headers to put in; those to take out."""
    included, own = includes_of(text)
    given = given_by(included)
    header = own_header(file, own)
    if header:
        given |= given_by(includes_of(header.read_text(encoding="utf-8"))[0])
    findings, lacking = [], []
    uses = uses_of(text)
    for name, offset in uses.items():
        line = text.count("\n", 0, offset) + 1
        homes = HEADERS.get(name)
        if homes is None:
            findings.append((line, f"std::{name} is not in scripts/standard_names.py"))
        elif not given.intersection(homes):
            lacking.append(homes[0])
            given |= given_by([homes[0]])
            findings.append((line, f"uses {name.rstrip(':')} without <{homes[0]}>"))
    used = {home for name in uses for home in HEADERS.get(name, ())}
    if PLACEMENT_NEW.search(code_of(text)):
        used.add("new")
    unused = [name for name in included if name not in used and not used.intersection(INCLUDED_BY.get(name, ()))]
    for name in unused:
        place = re.search(rf"#[ \t]*include[ \t]*<{re.escape(name)}>", text)
        findings.append((text.count("\n", 0, place.start()) + 1, f"includes <{name}> and uses nothing of it"))
    for name in {name for name in included if included.count(name) > 1}:
        findings.append((1, f"includes <{name}> twice"))
    return sorted(findings), lacking, unused


def mended(text, lacking, unused):
    """The text with the include lines changed; clang-format puts them in order."""
    for name in unused:
        text = re.sub(rf"^[ \t]*#[ \t]*include[ \t]*<{re.escape(name)}>[^\n]*\n", "", text, flags=re.MULTILINE)
    if lacking:
        lines = "".join(f"#include <{name}>\n" for name in lacking)
        matches = list(INCLUDE.finditer(text))
        standard = [match for match in matches if match[1][1:-1] in NAMES_OF]
        if standard:
            at = standard[-1].end() + 1
        elif matches:
            at, lines = matches[-1].end() + 1, "\n" + lines
        else:
            once = re.search(r"^#pragma once\n", text, re.MULTILINE)
            at, lines = (once.end(), "\n" + lines) if once else (0, lines + "\n")
        text = text[:at] + lines + text[at:]
    return re.sub(r"\n{3,}", "\n\n", text)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--fix", action="store_true", help="put the include lines in or out")
    parser.add_argument("files", nargs="+", type=Path)
    arguments = parser.parse_args()
    count = 0
    # Headers first: what a source has to include depends on its own header.
    for file in sorted(arguments.files, key=lambda file: (file.suffix != ".h", file)):
        text = file.read_text(encoding="utf-8")
        findings, lacking, unused = check(file, text)
        if arguments.fix and (lacking or unused):
            text = mended(text, lacking, unused)
            file.write_text(text, encoding="utf-8")
            findings, _, _ = check(file, text)
        count += len(findings)
        for line, words in findings:
            print(f"{file}:{line}: {words}")
    sys.exit(1 if count else 0)


if __name__ == "__main__":
    main()
