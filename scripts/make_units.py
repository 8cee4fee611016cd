#!/usr/bin/env python3
"""Writes host/CatalogueUnits.inc, the unit texts of the host's unit converter, from samples/data/snvt.csv.

One row per type, in the order of the indices, so that a reader can search by halves. The unit is the table's text;
it is empty where a type has none, which tells a type without unit from an index that is not assigned.
"""

from snvt_table import ROOT, read_types, write_or_check


def wide(text):
    """A wide string literal. The table is ASCII; anything else would need an encoding agreed with the compiler."""
    if not text.isascii() or not text.isprintable():
        raise SystemExit(f"{text!r} is not printable ASCII")
    return 'L"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def rows():
    yield "// Written by scripts/make_units.py from samples/data/snvt.csv. Change those, not this file."
    yield "// index, name, unit; ascending by index"
    for index, row in read_types().items():
        yield f"{{{index}, {wide(row['name'])}, {wide(row['unit'])}}},"


if __name__ == "__main__":
    content = "\n".join(rows()) + "\n"
    write_or_check(ROOT / "host" / "CatalogueUnits.inc", content.encode("ascii"), "Writes host/CatalogueUnits.inc.")
