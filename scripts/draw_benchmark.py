#!/usr/bin/env python3
"""Draws the benchmark's result as a picture: draw_benchmark.py RESULT.JSON PICTURE.SVG

A row of three lines for each job, one line for each size; time for a point (or
a look-up) on a logarithmic scale."""
import json
import math
import sys
from xml.sax.saxutils import escape

from whole_file import write_whole

WIDTH = 1120
LEFT = 292  # where the scale begins
RIGHT = 820  # and ends
RATIO = 938  # right edges of the two columns of figures
FASTER = 1076
TOP = 176
LINE = 17
GAP = 15

INK = "#1f2933"
QUIET = "#7b8794"
GRID = "#e4e7eb"
SHADE = "#f5f7fa"
FLOOR = "#9aa5b1"
ROOM = "#d9e8dc"
JOB = "#2f6f9f"
SCRIPT = "#d08a3c"
MISSED = "#b23b3b"


class Drawing:
    def __init__(self):
        self.parts = []

    def rect(self, x, y, width, height, fill, radius=0):
        self.parts.append(
            f'<rect x="{x:.1f}" y="{y:.1f}" width="{width:.1f}" height="{height:.1f}" rx="{radius}" fill="{fill}"/>')

    def line(self, x1, y1, x2, y2, stroke, width=1.0):
        self.parts.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" '
                          f'stroke="{stroke}" stroke-width="{width}"/>')

    def circle(self, x, y, radius, fill):
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="{fill}"/>')

    def text(self, x, y, text, size=12, fill=INK, anchor="start", weight="normal"):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" fill="{fill}" '
                          f'text-anchor="{anchor}" font-weight="{weight}">{escape(text)}</text>')

    def write(self, path, height):
        head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" '
                f'viewBox="0 0 {WIDTH} {height}" font-family="DejaVu Sans, Segoe UI, Helvetica, sans-serif">\n'
                f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>\n')
        write_whole(path, (head + "\n".join(self.parts) + "\n</svg>\n").encode("utf-8"))


def times(row):
    """Microseconds for a unit: of the job, its floor and its script. None where there is no floor or script."""
    return [row[key] / row["units"] if row[key] > 0 else None for key in ("job_us", "floor_us", "script_us")]


class Scale:
    """Powers of ten around all figures."""

    def __init__(self, rows):
        values = [value for row in rows for value in times(row) if value]
        self.low = math.floor(math.log10(min(values)))
        self.high = math.ceil(math.log10(max(values)))

    def x(self, value):
        return LEFT + (math.log10(value) - self.low) / (self.high - self.low) * (RIGHT - LEFT)

    def marks(self):
        return range(self.low, self.high + 1)


def unit(power):
    if power >= 3:
        return f"{10 ** (power - 3)} ms"
    if power >= 0:
        return f"{10 ** power} µs"
    return f"{10 ** (power + 3)} ns"


def head(drawing, result, scale, bottom):
    drawing.text(32, 44, "What a host's jobs cost", 23, weight="bold")
    drawing.text(32, 68, "Time for a point (or a look-up) at 100, 1,000 and 10,000 points: the component, the least that "
                 "any implementation must do, and a script over the DOM.", 12.5, QUIET)
    y = 97
    drawing.rect(32, y - 9, 26, 8, JOB, 2)
    drawing.text(65, y, "the component")
    drawing.rect(181, y - 12, 2.5, 14, INK)
    drawing.text(191, y, "its floor")
    drawing.rect(267, y - 12, 24, 14, ROOM, 2)
    drawing.text(298, y, "the room up to 1.5 times the floor")
    drawing.circle(536, y - 4.5, 4.5, SCRIPT)
    drawing.text(547, y, "the same job in VBScript")
    drawing.text(738, y, "red: a goal is missed", fill=MISSED)

    facts = [f"{result['bytes_per_point']:,.0f} bytes", f"{result['dll_bytes'] / 1024:,.0f} KB",
             f"{result['yield_us']:.1f} µs"]
    names = ["of memory for a point", "is the size of the DLL", "is a yield to the message loop here"]
    x = 32
    for fact, name in zip(facts, names):
        drawing.text(x, 132, fact, 15, weight="bold")
        x += 9.9 * len(fact) + 8
        drawing.text(x, 132, name, 12, QUIET)
        x += 6.7 * len(name) + 34

    drawing.text(RATIO, TOP - 12, "times floor", 11, QUIET, "end")
    drawing.text(FASTER, TOP - 12, "times as fast as script", 11, QUIET, "end")
    for power in scale.marks():
        x = scale.x(10.0 ** power)
        drawing.line(x, TOP - 4, x, bottom, GRID)
        drawing.text(x, TOP - 12, unit(power), 11, QUIET, "middle")
        drawing.text(x, bottom + 16, unit(power), 11, QUIET, "middle")


def missed(result, row, goal):
    return any(not found["met"] and found["goal"] == goal and found["job"] == row["job"] and
               found["points"] == row["points"] for found in result["goals"])


def draw_line(drawing, result, scale, row, y):
    job, floor, script = times(row)
    if floor:
        drawing.rect(scale.x(floor), y - 13, scale.x(1.5 * floor) - scale.x(floor), LINE - 2, ROOM, 2)
    grows = missed(result, row, "growth from 1,000 points")
    drawing.rect(LEFT, y - 9.5, scale.x(job) - LEFT, 8, MISSED if grows else JOB, 2)
    if floor:
        drawing.rect(scale.x(floor) - 1.2, y - 13, 2.4, LINE - 2, INK)
    if script:
        drawing.circle(scale.x(script), y - 5.5, 4.5, SCRIPT)
    drawing.text(LEFT - 10, y - 1.5, f"{row['points']:,}", 11, QUIET, "end")
    if floor:
        red = missed(result, row, "times its floor")
        drawing.text(RATIO, y - 1.5, f"{job and job / floor:.2f}", 11.5, MISSED if red else INK, "end")
    else:
        drawing.text(RATIO, y - 1.5, "–", 11.5, QUIET, "end")
    if script:
        red = missed(result, row, "times faster than the script")
        drawing.text(FASTER, y - 1.5, f"{script / job:.1f}", 11.5, MISSED if red else INK, "end")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        result = json.load(file)
    rows = result["jobs"]
    jobs = list(dict.fromkeys(row["job"] for row in rows))
    scale = Scale(rows)
    blocks = [[row for row in rows if row["job"] == job] for job in jobs]
    bottom = TOP + sum(len(block) * LINE + GAP for block in blocks)

    drawing = Drawing()
    y = TOP
    for number, block in enumerate(blocks):  # shades first, so that the grid lies over them
        height = len(block) * LINE + GAP
        if number % 2 == 0:
            drawing.rect(20, y, WIDTH - 40, height, SHADE, 4)
        y += height
    head(drawing, result, scale, bottom)
    y = TOP
    for job, block in zip(jobs, blocks):
        name = job[0].upper() + job[1:]
        drawing.text(32, y + GAP / 2 + len(block) * LINE / 2 + 4, name, 12.5, weight="bold")
        for number, row in enumerate(block):
            draw_line(drawing, result, scale, row, y + GAP / 2 + (number + 1) * LINE - 3)
        y += len(block) * LINE + GAP
    met = sum(1 for found in result["goals"] if found["met"])
    drawing.text(32, bottom + 42, f"{met} of {len(result['goals'])} goals met: within 1.5 times the floor, no more than 1.2 "
                 "times dearer for a point at 10,000 than at 1,000, 5 times faster than the script.", 12, QUIET)
    drawing.write(sys.argv[2], bottom + 62)


if __name__ == "__main__":
    main()
