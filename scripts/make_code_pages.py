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
# Those that Windows' parser loads everywhere.
COMMON = (
    {f"ISO-8859-{n}": f"iso8859_{n}" for n in (1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 15)}
    | {f"WINDOWS-{n}": f"cp{n}" for n in range(1250, 1259)}
)
# Those that one installation of it loads and another refuses. Not IBM864, whose bytes below 0x80 are
# not all ASCII's.
RARE = (
    {f"ISO-8859-{n}": f"iso8859_{n}" for n in (10, 14, 16)}
    | {"WINDOWS-874": "cp874", "TIS-620": "tis_620", "KOI8-R": "koi8_r", "KOI8-U": "koi8_u"}
    | {f"IBM{n}": f"cp{n}" for n in (437, 737, 775, 850, 852, 855, 857, 860, 861, 862, 863, 865, 866, 869)}
    | {"IBM00858": "cp858", "MACINTOSH": "mac_roman"}
)
# Characters that an encoding got later, and that not all parsers know.
NEWER = {"ISO-8859-7": (0xA4, 0xA5, 0xAA)}


def table(name, codec):
    codes = []
    for byte in range(0x80, 0x100):
        try:
            code = ord(bytes([byte]).decode(codec))
        except UnicodeDecodeError:
            code = 0
        codes.append(0 if byte in NEWER.get(name, ()) else code)
    return codes


def text():
    lines = ["// Written by scripts/make_code_pages.py. Name; whether every parser loads it; bytes from 0x80 on, 0 where",
             "// there is no character."]
    for name, codec in (COMMON | RARE).items():
        lines.append(f'{{"{name}", {"true" if name in COMMON else "false"}, {{')
        codes = table(name, codec)
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
