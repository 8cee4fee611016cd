#!/usr/bin/env python3
"""Writes the notices of what the binaries contain of others, with the whole texts of their licences.

    notices.py FILE

The packages are those of the table in NOTICES.md; the texts are what the package manager installed with them. Exits
with 1 when one has none.
"""
import re
import sys
from pathlib import Path

from whole_file import write_whole

ROOT = Path(__file__).resolve().parent.parent
DOC = Path("/usr/share/doc")
# Texts that copyright files only name.
COMMON = Path("/usr/share/common-licenses")
NAMED = ("GPL-3",)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    notices = (ROOT / "NOTICES.md").read_text(encoding="utf-8")
    packages = re.findall(r"^\|[^|]*\|[^|]*\| `([\w.+-]+)` \|", notices, re.MULTILINE)
    texts = [notices]
    for package in packages:
        path = DOC / package / "copyright"
        if not path.is_file():
            sys.exit(f"{package} has no {path}: is it installed?")
        texts.append(f"{'=' * 78}\n{package}\n{'=' * 78}\n\n{path.read_text(encoding='utf-8')}")
    for name in NAMED:
        texts.append(f"{'=' * 78}\n{name}\n{'=' * 78}\n\n{(COMMON / name).read_text(encoding='utf-8')}")
    write_whole(sys.argv[1], "\n".join(texts).encode("utf-8"))


if __name__ == "__main__":
    main()
