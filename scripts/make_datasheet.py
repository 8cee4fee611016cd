#!/usr/bin/env python3
"""Writes samples/O_Tam_id.pdf, the one-page data sheet of the sample module.

What it says comes from the samples themselves: the identity and the database sizes from O_Tam_id.xml, the channels
from streams/full.xml, units and ranges from data/snvt.csv. The file holds no date, so the same samples give the same
bytes. Fonts are two of the standard ones that every viewer has.
"""

import xml.etree.ElementTree as ET

from snvt_table import ROOT, read_types, write_or_check

SAMPLES = ROOT / "samples"
WIDTH, HEIGHT, MARGIN = 595, 842, 48  # A4 in points
KINDS = {
    "AI": "Analogue input",
    "AO": "Analogue output",
    "DI": "Digital input",
    "DO": "Digital output",
    "CTX": "Input context",
}
REGULAR, BOLD = "F1", "F2"


class Page:
    """The content stream of one page. Positions are in points from the upper left corner."""

    def __init__(self):
        self.operators = []

    def text(self, x, y, size, text, font=REGULAR):
        escaped = text.replace("\\", "\\\\").replace("(", "\\(").replace(")", "\\)")
        self.operators.append(f"BT /{font} {size} Tf {x} {HEIGHT - y} Td ({escaped}) Tj ET")

    def rule(self, y, width=0.5):
        self.operators.append(f"{width} w {MARGIN} {HEIGHT - y} m {WIDTH - MARGIN} {HEIGHT - y} l S")

    def shade(self, y, height, grey):
        self.operators.append(f"{grey} g {MARGIN} {HEIGHT - y - height} {WIDTH - 2 * MARGIN} {height} re f 0 g")

    def table(self, y, columns, rows, pitch):
        """A table whose head line stands at y; returns where the next line would stand. columns: (x, heading)."""
        for x, heading in columns:
            self.text(x, y, 8, heading, BOLD)
        self.rule(y + 4, 0.8)
        for number, row in enumerate(rows):
            y += pitch
            if number % 2:
                self.shade(y - pitch + 5, pitch, 0.93)
            for (x, _), cell in zip(columns, row):
                self.text(x, y, 8, cell)
        self.rule(y + 5, 0.8)
        return y + pitch

    def stream(self):
        return "\n".join(self.operators).encode("cp1252")


def keyword(point, name):
    return next((child.text for child in point if child.tag.upper() == name), "")


def channels(stream, types):
    """One row per channel: its points, and what its output carries."""
    inputs = {}
    for point in stream.findall("InReferences/*"):
        channel, _, item = point.tag.partition("_")
        inputs.setdefault(channel, []).append(item)
    for point in stream.findall("OutReferences/*"):
        channel, _, item = point.tag.partition("_")
        row = types[int(keyword(point, "SNVTTYPE"))]
        limits = f"{row['min']} to {row['max']}" if row["min"] else ""
        kind = KINDS[channel.rstrip("0123456789")]
        yield channel, kind, ", ".join(inputs.get(channel, [])), item, row["name"], row["unit"], limits


def type_dependent(stream):
    for point in stream.findall("OutReferences/*"):
        if any(name.upper() == "TYPEDEPENDENT" for name in point.attrib):
            yield point.tag.partition("_")[0]


def sizes(definition):
    for row in definition.find("DataSizes"):
        yield row.get("Name"), row.get("CDB_Size"), row.get("Size_area_1"), row.get("Size_area_2")


def draw(definition, stream, types):
    page = Page()
    page.shade(30, 46, 0.88)
    page.text(MARGIN + 10, 52, 18, definition.findtext("NAME"), BOLD)
    page.text(MARGIN + 10, 68, 9, f"{definition.findtext('ID')}  -  {definition.findtext('CATEGORY')}  -  Data sheet")
    description = definition.findtext("DESCRIPTION").partition(": ")
    page.text(MARGIN, 98, 10, description[0] + ":")
    page.text(MARGIN, 112, 10, description[2] + ".")

    page.text(MARGIN, 142, 11, "Channels", BOLD)
    columns = [(MARGIN + 4, "Channel"), (100, "Kind"), (182, "Inputs"), (230, "Output"), (270, "Output type"),
               (366, "Unit"), (426, "Range")]
    y = page.table(160, columns, channels(stream, types), 14)

    page.text(MARGIN, y + 14, 11, "Database", BOLD)
    columns = [(MARGIN + 4, "Object"), (182, "Database size, bytes"), (290, "Area 1, bytes"), (390, "Area 2, bytes")]
    y = page.table(y + 32, columns, sizes(definition), 14)

    page.text(MARGIN, y + 14, 8, "Points are named channel_item, for instance AI1_Out. Ranges are those of the types.")
    followers = ", ".join(type_dependent(stream))
    page.text(MARGIN, y + 25, 8, f"Channels whose type follows the sensor that they are set up for: {followers}.")
    page.rule(HEIGHT - 50)
    page.text(MARGIN, HEIGHT - 38, 8, "Sample data sheet for a sample module. It describes no device that is sold.")
    return page.stream()


def document(content):
    font = "<< /Type /Font /Subtype /Type1 /BaseFont /{} /Encoding /WinAnsiEncoding >>"
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        (f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 {WIDTH} {HEIGHT}] /Contents 6 0 R "
         f"/Resources << /Font << /{REGULAR} 4 0 R /{BOLD} 5 0 R >> >> >>").encode("ascii"),
        font.format("Helvetica").encode("ascii"),
        font.format("Helvetica-Bold").encode("ascii"),
        b"<< /Length %d >>\nstream\n%s\nendstream" % (len(content), content),
        b"<< /Title (Remote I/O module: data sheet) >>",
    ]
    out = bytearray(b"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n")
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    for offset in offsets:
        out += b"%010d 00000 n \n" % offset
    out += b"trailer\n<< /Size %d /Root 1 0 R /Info 7 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, start)
    return bytes(out)


if __name__ == "__main__":
    page = draw(ET.parse(SAMPLES / "O_Tam_id.xml").getroot(), ET.parse(SAMPLES / "streams" / "full.xml").getroot(),
                read_types())
    write_or_check(SAMPLES / "O_Tam_id.pdf", document(page), "Writes samples/O_Tam_id.pdf.")
