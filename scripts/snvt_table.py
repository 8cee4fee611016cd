"""What the scripts that generate files have in common: the type table and "write it, or check it"."""

import argparse
import csv
import sys
from decimal import Decimal
from pathlib import Path

from whole_file import write_whole

ROOT = Path(__file__).resolve().parent.parent
TABLE = ROOT / "samples" / "data" / "snvt.csv"

NUMERIC_KINDS = ("SignedNumeric", "UnsignedNumeric", "Float")
GENERAL_TYPES = NUMERIC_KINDS + ("Enum", "Bitfield", "Textual", "Struct")


def read_types():
    """The rows of the type table, by index and in its order; a faulty table ends the script."""
    types = {}
    with TABLE.open(encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file):
            index = int(row["index"])
            if index in types:
                sys.exit(f"{TABLE.name}: index {index} stands twice")
            if row["general_type"] not in GENERAL_TYPES + ("",):
                sys.exit(f"{TABLE.name}: {row['name']} has an unknown general type {row['general_type']!r}")
            if row["general_type"] in NUMERIC_KINDS and not int(row["length_bytes"] or 0):
                sys.exit(f"{TABLE.name}: {row['name']} is numeric and has no length")
            types[index] = row
    if list(types) != sorted(types):
        sys.exit(f"{TABLE.name}: the rows are not in the order of their indices")
    return types


def plain(number):
    """A number text without exponent, "." as decimal mark: -3.40282E+38 is 340282 and 33 zeros."""
    return format(Decimal(number), "f") if number else ""


def scaled(row, raw):
    """The engineering value of a raw integer, a * 10^b * (raw + c), as plain text."""
    if not raw:
        return ""
    value = Decimal(row["a"]).scaleb(int(row["b"])) * (Decimal(raw) + Decimal(row["c"]))
    text = format(value, "f")
    return (text.rstrip("0").rstrip(".") if "." in text else text) or "0"


def write_or_check(path, content, description):
    """Writes the bytes; with --check on the command line compares them and exits 1 when they differ."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--check", action="store_true", help="change nothing; exit 1 when the file is out of date")
    if parser.parse_args().check:
        if not path.is_file() or path.read_bytes() != content:
            sys.exit(f"{path.relative_to(ROOT)} is out of date: run {Path(sys.argv[0]).name}")
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    write_whole(path, content)
