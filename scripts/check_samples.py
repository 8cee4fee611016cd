#!/usr/bin/env python3
"""Checks that samples/ is what samples/README.md and samples/streams/README.md say of it; exits 1 when it is not."""

import subprocess
import sys
import xml.etree.ElementTree as ET
from decimal import Decimal, InvalidOperation
from pathlib import Path

from snvt_table import GENERAL_TYPES, NUMERIC_KINDS, ROOT, plain, read_types

SAMPLES = ROOT / "samples"
STREAMS = SAMPLES / "streams"
MALFORMED = {STREAMS / "damaged.xml"}
MADE_BY = sorted(Path(__file__).parent.glob("make_*.py"))
COLLECTIONS = ("InReferences", "OutReferences", "Attributes")

# The faults that a sample has on purpose.
UNKNOWN_TYPES = {"oddities.xml": {"9999", "140", "0105", " 22", " ", ""}}
WITHOUT_DEFAULT = {"oddities.xml": {"AO9_Gain"}}
OUT_OF_RANGE = {"oddities.xml": {"AO1_Gain", "AO2_Gain"}}
REPEATED_NAMES = {"duplicate_attribute.xml": {"ao1_gain"}}

# What full.xml has to use somewhere, in any letter case.
KEYWORDS = {
    "InReferences": "MANDATORY VISIBLE LOGICALADDRESS ISPERMANENT SNVTCOMPATIBILITYLIST PROTOCOLREFERENCE SNVTTYPE",
    "OutReferences": "VISIBLE SNVTTYPE LOGICALADDRESS ISMAPASOO OBJOFFSET ABSOLUTEOBJECTINDEX ISWRITABLE",
    "Attributes": "DESCRIPTION VISIBLE SNVTTYPE LOGICALADDRESS ISPERMANENT VALUE",
}

faults = []


def expect(condition, file, text):
    if not condition:
        faults.append(f"{file.relative_to(ROOT)}: {text}")


def parsed(file):
    """The root of a well-formed file; a malformed one is a fault unless it is meant to be."""
    try:
        root = ET.parse(file).getroot()
    except ET.ParseError as error:
        expect(file in MALFORMED, file, str(error))
        return None
    expect(file not in MALFORMED, file, "is meant to be malformed")
    return root


def keyword(point, name):
    """The text of the last child of that name, in any letter case, or None."""
    texts = [child.text or "" for child in point if child.tag.upper() == name]
    return texts[-1] if texts else None


def points(root):
    for collection in COLLECTIONS:
        for point in root.findall(f"{collection}/*"):
            yield collection, point


def used_types(root):
    for _, point in points(root):
        for child in point:
            if child.tag.upper() == "SNVTTYPE":
                yield child.text or ""
            elif child.tag.upper() == "SNVTCOMPATIBILITYLIST":
                yield from (child.text or "").rstrip(",").split(",")


def check_names(file, root):
    for collection in COLLECTIONS:
        names = [point.tag.lower() for point in root.findall(f"{collection}/*")]
        repeated = {name for name in names if names.count(name) > 1}
        wanted = REPEATED_NAMES.get(file.name, set()) if collection == "Attributes" else set()
        expect(repeated == wanted, file, f"{collection} repeats {sorted(repeated)}, not {sorted(wanted)}")


def in_range(row, value):
    try:
        number = Decimal(value)
    except InvalidOperation:
        return False
    low, high = plain(row["min"]), plain(row["max"])
    return (not low or number >= Decimal(low)) and (not high or number <= Decimal(high))


def check_numeric_attributes(file, root, types, definition=None):
    """Values in range; with a definition, a default for each."""
    strays, lacking = set(), set()
    for attribute in root.findall("Attributes/*"):
        row = types.get(keyword(attribute, "SNVTTYPE"))
        if row is None or row["general_type"] not in NUMERIC_KINDS:
            continue
        if not in_range(row, keyword(attribute, "VALUE")):
            strays.add(attribute.tag)
        if definition is not None:
            default = definition.findtext(f"Tam/Attributes/{attribute.tag}/DefaultValue")
            if default is None:
                lacking.add(attribute.tag)
            else:
                expect(in_range(row, default), file, f"the default of {attribute.tag} is out of range")
    wanted = OUT_OF_RANGE.get(file.name, set())
    expect(strays == wanted, file, f"out of range: {sorted(strays)}, not {sorted(wanted)}")
    wanted = WITHOUT_DEFAULT.get(file.name, set())
    expect(definition is None or lacking == wanted, file, f"no default: {sorted(lacking)}, not {sorted(wanted)}")


def check_types(file, root, types):
    unknown = {name for name in used_types(root) if name not in types}
    wanted = UNKNOWN_TYPES.get(file.name, set())
    expect(unknown == wanted, file, f"unknown types {sorted(unknown)}, not {sorted(wanted)}")


def check_full(file, root, types):
    for collection, names in KEYWORDS.items():
        used = {child.tag.upper() for child in root.findall(f"{collection}/*/*")}
        expect(used >= set(names.split()), file, f"{collection} lacks {set(names.split()) - used}")
    kinds = {types[keyword(point, "SNVTTYPE")]["general_type"] for point in root.findall("Attributes/*")}
    expect(kinds == set(GENERAL_TYPES), file, f"the attributes lack {set(GENERAL_TYPES) - kinds}")
    expect(any("TYPEDEPENDENT" in map(str.upper, point.attrib) for point in root.findall("OutReferences/*")), file,
           "no output is TYPEDEPENDENT")


def check_definition(file, root):
    rows = [(row.tag[1:], *map(row.get, ("CDB_Size", "Size_area_1", "Size_area_2"))) for row in root.find("DataSizes")]
    expect([row[0] for row in rows] == list("012345"), file, "DataSizes does not have the rows 0 to 5")
    expect(all(0 <= int(size) <= 255 for row in rows for size in row[1:]), file, "a size is no byte")


def check_channel(file, root):
    expect(root.findtext("ID") == file.stem.lower(), file, "ID and file name differ")
    for collection, entry in zip(COLLECTIONS, ("InReference", "OutReference", "Attrib")):
        names = {point.tag for point in root.findall(f"{collection}/*")}
        for node in root.findall(f"TAMConfig/{collection}/{entry}"):
            expect(node.get("Name") in names, file, f"TAMConfig names {node.get('Name')}, which is no item")


def main():
    catalogue = {node.tag.removeprefix("SNVT_") for node in ET.parse(SAMPLES / "catalogue.xml").getroot()}
    types = {str(index): row for index, row in read_types().items() if str(index) in catalogue}
    definition = ET.parse(SAMPLES / "O_Tam_id.xml").getroot()
    files = sorted(SAMPLES.rglob("*.xml"))
    for file in files:
        root = parsed(file)
        if root is None:
            continue
        if file == SAMPLES / "O_Tam_id.xml":
            check_definition(file, root)
        elif file.parent == STREAMS:
            check_names(file, root)
            check_types(file, root, types)
            check_numeric_attributes(file, root, types, definition)
        elif file.parent == SAMPLES / "channels":
            check_names(file, root)
            check_types(file, root, types)
            check_numeric_attributes(file, root, types)
            check_channel(file, root)
        if file == STREAMS / "full.xml":
            check_full(file, root, types)
    for script in MADE_BY:
        run = subprocess.run([sys.executable, str(script), "--check"], capture_output=True, text=True, check=False)
        if run.returncode:
            faults.append(run.stderr.strip() or f"{script.name} --check failed")
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(files)} XML samples and {len(MADE_BY)} generated files are as they should be")


if __name__ == "__main__":
    main()
