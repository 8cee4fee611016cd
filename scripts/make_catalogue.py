#!/usr/bin/env python3
"""Writes samples/catalogue.xml, the SNVT catalogue that a host hands to the component, from samples/data/snvt.csv.

The component finds a type as the child SNVT_<index> of the document element. What each kind of type gets, and why:

  every type        attributes Factor and Z3Region, children Name and Type
  Signed-, Unsigned-
  Numeric, Float    Unit, BACnetUnit, Min, Max, Length, A_Coef, B_Coef, C_Coef, InvalidValue
  Bitfield          the same elements; the table gives it only a length
  Textual           Length
  Enum              Length, EnumDesc
  Struct            Length

- An element for which the table has no value is left out: an empty limit would say the same, but an empty length or
  coefficient is no number and would be reported for every point of that type.
- Limits that the table does not have are those of the bytes: 224 goes from 0 to 5 * 65535.
- Types whose general type no source states (215 to 223 and 225) get no Type element. The component then takes over
  the name and nothing else; with an empty or made-up Type it would report a bad type for every use of a valid name.
- Coefficients: value = A * 10^B * (raw + C). Kinds that are read as numbers and have none (the Float types carry the
  engineering value as it is, the Bitfields their bits) get 1, 0, 0, which is the raw value itself.
- InvalidValue is in engineering units like Min and Max (the table has the raw number): the numeric editor writes it
  into the value text, beside limits and values in engineering units. 105 has 32767 raw and 327.67 here.
  SNVT_pwr_fact (98) gets none: the number that its source prints is not to be relied on (data/SNVT_NOTES.md).
- Numbers are plain decimals with ".": limits are read as numbers under any locale, and an exponent is one more thing
  that a reader can misread. Lengths and coefficients are whole numbers, the same text under every locale.
- Enum and Struct types are read without Length (an enumeration always counts as one byte, a structure as none). It
  stands here for hosts, which need it to lay out a database, and does no harm.
- EnumDesc is a host's too: the component takes an enumeration's description from its owner, not from the catalogue.
  Entries are "value,label;", every one closed, because a last entry left open cannot be turned into its label.
- Factor is 1 for every type: the whole scaling stands in the three coefficients, and a second factor would only
  repeat or contradict it. Z3Region is 0: no source assigns a region.
- BACnetUnit is the identifier of BACnet's engineering units (ASHRAE 135) for the unit text. A unit without an exact
  counterpart gets none.
"""

from xml.sax.saxutils import escape

from snvt_table import NUMERIC_KINDS, ROOT, plain, read_types, scaled, write_or_check

FACTOR = 1
Z3_REGION = 0

UNRELIABLE_INVALID = {98}

BACNET_UNITS = {
    "%": "percent",
    "A": "amperes",
    "Btu": "btus",
    "Hz": "hertz",
    "MBtu": "mega-btus",
    "NTU": "nephelometric-turbidity-unit",
    "Pa": "pascals",
    "V": "volts",
    "W": "watts",
    "W/m2": "watts-per-square-meter",
    "Wh": "watt-hours",
    "dB": "decibels",
    "dB SPL": "decibels",
    "degrees": "degrees-angular",
    "degrees C": "degrees-celsius",
    "degrees C/min": "degrees-celsius-per-minute",
    "g": "grams",
    "g/kg": "grams-per-kilogram",
    "g/m2": "grams-per-square-meter",
    "h": "hours",
    "kBtu": "kilo-btus",
    "kHz": "kilohertz",
    "kJ/kg": "kilojoules-per-kilogram",
    "kPa": "kilopascals",
    "kV": "kilovolts",
    "kW": "kilowatts",
    "kWh": "kilowatt-hours",
    "kg": "kilograms",
    "kg/h": "kilograms-per-hour",
    "kg/m3": "kilograms-per-cubic-meter",
    "kl": "cubic-meters",
    "km": "kilometers",
    "kohms": "kilohms",
    "l": "liters",
    "l/s": "liters-per-second",
    "lux": "luxes",
    "m": "meters",
    "m/s": "meters-per-second",
    "m2": "square-meters",
    "m3/h": "cubic-meters-per-hour",
    "mA": "milliamperes",
    "mV": "millivolts",
    "metric tons": "tons",
    "mg": "milligrams",
    "min": "minutes",
    "ml": "milliliters",
    "ml/s": "milliliters-per-second",
    "mm": "millimeters",
    "ohms": "ohms",
    "pH": "pH",
    "ppm": "parts-per-million",
    "rad": "radians",
    "rad/s": "radians-per-second",
    "rpm": "revolutions-per-minute",
    "s": "seconds",
    "um": "micrometers",
    "units": "no-units",
}

# Types whose unit text alone would mislead: a difference must not be converted with the scale's offset.
BACNET_UNITS_OF_TYPES = {98: "power-factor", 99: "power-factor", 147: "delta-degrees-kelvin"}


def limits(row):
    """The table's limits; where it has none, what the bytes of a scaled number can hold."""
    if row["min"] or row["max"] or not row["a"]:
        return row["min"], row["max"]
    bits = 8 * int(row["length_bytes"])
    is_signed = row["general_type"] == "SignedNumeric"
    raw = (-(2 ** (bits - 1)), 2 ** (bits - 1) - 1) if is_signed else (0, 2**bits - 1)
    return tuple(scaled(row, str(value)) for value in raw)


def numeric_children(index, row):
    yield "Unit", row["unit"]
    yield "BACnetUnit", BACNET_UNITS_OF_TYPES.get(index, BACNET_UNITS.get(row["unit"], ""))
    least, greatest = limits(row)
    yield "Min", plain(least)
    yield "Max", plain(greatest)
    yield "Length", row["length_bytes"]
    yield "A_Coef", row["a"] or "1"
    yield "B_Coef", row["b"] or "0"
    yield "C_Coef", row["c"] or "0"
    yield "InvalidValue", "" if index in UNRELIABLE_INVALID else scaled(row, row["invalid_value"])


def children(index, row):
    """(element, text) pairs of one type; an empty text means that the element is left out."""
    kind = row["general_type"]
    yield "Name", row["name"]
    yield "Type", kind
    if kind in NUMERIC_KINDS or kind == "Bitfield":
        yield from numeric_children(index, row)
    else:
        yield "Length", row["length_bytes"]
    if kind == "Enum":
        yield "EnumDesc", row["enum"]


def catalogue():
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        "<!-- Written by scripts/make_catalogue.py from samples/data/snvt.csv. Change those, not this file. -->",
        "<SNVTCatalogue>",
    ]
    for index, row in read_types().items():
        lines.append(f'  <SNVT_{index} Factor="{FACTOR}" Z3Region="{Z3_REGION}">')
        lines += [f"    <{name}>{escape(text)}</{name}>" for name, text in children(index, row) if text]
        lines.append(f"  </SNVT_{index}>")
    lines.append("</SNVTCatalogue>")
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    write_or_check(ROOT / "samples" / "catalogue.xml", catalogue().encode("utf-8"), "Writes samples/catalogue.xml.")
