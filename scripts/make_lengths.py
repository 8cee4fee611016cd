#!/usr/bin/env python3
"""Writes host/CatalogueLengths.inc, the value lengths of the host's database compiler, from samples/data/snvt.csv.

One row per type, in the order of the indices, beside the rows of host/CatalogueUnits.inc. The length is in bytes;
it is 0 where the table states none.
"""

from snvt_table import ROOT, read_types, write_or_check


def rows():
    yield "// Written by scripts/make_lengths.py from samples/data/snvt.csv. Change those, not this file."
    yield "// index, length in bytes; ascending by index"
    for index, row in read_types().items():
        yield f"{{{index}, {int(row['length_bytes'] or 0)}}},"


if __name__ == "__main__":
    content = "\n".join(rows()) + "\n"
    write_or_check(ROOT / "host" / "CatalogueLengths.inc", content.encode("ascii"), "Writes host/CatalogueLengths.inc.")
