#!/usr/bin/env python3
"""Writes check/CodePages.inc: the upper 128 characters of the one-byte encodings that `check` reads.

    scripts/make_code_pages.py           writes the file
    scripts/make_code_pages.py --check   changes nothing; exit 1 when the file is out of date
"""

import sys
from pathlib import Path

from whole_file import write_whole

TARGET = Path(__file__).resolve().parent.parent / "check" / "CodePages.inc"

# What a declaration says -> Python's name of the encoding.
ENCODINGS = (
    {f"ISO-8859-{n}": f"iso8859_{n}" for n in (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 14, 15, 16)}
    | {f"WINDOWS-{n}": f"cp{n}" for n in range(1250, 1259)}
)


def table(codec):
    codes = []
    for byte in range(0x80, 0x100):
        try:
            codes.append(ord(bytes([byte]).decode(codec)))
        except UnicodeDecodeError:
            codes.append(0)
    return codes


def text():
    lines = ["// Written by scripts/make_code_pages.py. Bytes from 0x80 on; 0 where there is no character."]
    for name, codec in ENCODINGS.items():
        lines.append(f'{{"{name}", {{')
        codes = table(codec)
        for row in range(0, 128, 12):
            lines.append("    " + ", ".join(f"0x{code:04X}" for code in codes[row:row + 12]) + ",")
        lines.append("}},")
    return "\n".join(lines) + "\n"


def main():
    if sys.argv[1:] == ["--check"]:
        if TARGET.read_text() != text():
            sys.exit(f"{TARGET.name} is out of date: run scripts/make_code_pages.py")
        return
    write_whole(TARGET, text().encode("utf-8"))


main()
