#!/usr/bin/env python3
"""Draws the benchmark's result as a picture: draw_benchmark.py RESULT.JSON PICTURE.SVG

A row of lines for each job, one line for each size. The scale is linear and shows
how many times its floor a job takes. A goal that is missed has a mark of its own
shape beside its colour."""
import json
import sys
from xml.sax.saxutils import escape

from whole_file import write_whole

WIDTH = 1120
LEFT = 292  # where the scale begins
RIGHT = 690  # and ends
MOST = 1.2  # times the floor that a job may take
LAST = 2.0  # times the floor at the end of the scale
RATIO = 760  # right edges of the columns of figures
UNIT = 868
GROWTH = 958
FASTER = 1084
TOP = 182
LINE = 17
GAP = 15

INK = "#1f2933"
QUIET = "#7b8794"
GRID = "#e4e7eb"
SHADE = "#f5f7fa"
ROOM = "#d9e8dc"
JOB = "#2f6f9f"
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

    def path(self, points, fill):
        corners = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polygon points="{corners}" fill="{fill}"/>')

    def text(self, x, y, text, size=12, fill=INK, anchor="start", weight="normal"):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" fill="{fill}" '
                          f'text-anchor="{anchor}" font-weight="{weight}">{escape(text)}</text>')

    def write(self, path, height):
        head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" '
                f'viewBox="0 0 {WIDTH} {height}" font-family="DejaVu Sans, Segoe UI, Helvetica, sans-serif">\n'
                f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>\n')
        write_whole(path, (head + "\n".join(self.parts) + "\n</svg>\n").encode("utf-8"))


def x_of(ratio):
    return LEFT + min(ratio, LAST) / LAST * (RIGHT - LEFT)


def time_text(us):
    return f"{us:,.1f} µs" if us >= 1 else f"{us * 1000:,.0f} ns"


def judged(result, row, goal):
    """Whether the goal is met; None where it is not asked of this row."""
    found = [each["met"] for each in result["goals"]
             if each["goal"] == goal and each["job"] == row["job"] and each["points"] == row["points"]]
    return found[0] if found else None


def triangle(drawing, x, y):
    drawing.path([(x, y), (x + 9, y), (x + 4.5, y - 8.5)], MISSED)


def figure(drawing, x, y, text, met):
    """A figure in a column. A missed goal: bold, with a triangle; none asked: grey."""
    if met is False:
        triangle(drawing, x - 7.4 * len(text) - 14, y)
    drawing.text(x, y, text, 11.5, MISSED if met is False else INK if met else QUIET, "end",
                 "bold" if met is False else "normal")


def head(drawing, result, bottom):
    drawing.text(32, 44, "What a host's jobs cost", 23, weight="bold")
    sizes = [f"{points:,}" for points in dict.fromkeys(row["points"] for row in result["jobs"])]
    drawing.text(32, 68, f"How many times the floor a job takes, at {', '.join(sizes[:-1])} and {sizes[-1]} points. The floor is "
                 "the work that no implementation can leave out.", 12.5, QUIET)
    y = 97
    drawing.rect(32, y - 9, 26, 8, JOB, 2)
    drawing.text(65, y, "the component")
    drawing.rect(181, y - 12, 2.5, 14, INK)
    drawing.text(191, y, "its floor")
    drawing.rect(267, y - 12, 24, 14, ROOM, 2)
    drawing.text(298, y, f"the room up to {MOST} times the floor")
    triangle(drawing, 536, y)
    drawing.text(552, y, "a goal is missed: this mark, and bold")
    drawing.text(812, y, "grey: no goal for this figure", fill=QUIET)

    facts = [(f"{result['bytes_per_point']:,.0f} bytes", "for a point"),
             (f"{result['dll_bytes'] / 1024:,.0f} KB", "is the DLL")]
    if "load_us" in result:
        facts += [(f"{result['load_us'] / 1000:.1f} ms", "to load it"),
                  (f"{result['first_object_us'] / 1000:.2f} ms", "for the first object")]
    facts.append((f"{result['yield_us']:.1f} µs", "for a yield here"))
    x = 32
    for fact, name in facts:
        drawing.text(x, 132, fact, 15, weight="bold")
        x += 9.9 * len(fact) + 8
        drawing.text(x, 132, name, 12, QUIET)
        x += 6.7 * len(name) + 34

    for column, lines in ((RATIO, ("times", "floor")), (UNIT, ("for a", "point")), (GROWTH, ("growth", "from 1,000")),
                          (FASTER, ("times as fast", "as script"))):
        for number, text in enumerate(lines):
            drawing.text(column, TOP - 25 + 13 * number, text, 11, QUIET, "end")
    for tenths in range(0, int(LAST * 10) + 1, 2):
        x = x_of(tenths / 10)
        drawing.line(x, TOP - 4, x, bottom, GRID)
        for y in (TOP - 12, bottom + 16):
            drawing.text(x, y, f"{tenths / 10:.1f}", 11, QUIET, "middle")


def draw_line(drawing, result, rows, row, y):
    job, floor, script, units = (row[key] for key in ("job_us", "floor_us", "script_us", "units"))
    drawing.text(LEFT - 10, y - 1.5, f"{row['points']:,}", 11, QUIET, "end")
    if floor:
        ratio = job / floor
        met = judged(result, row, "times its floor")
        drawing.rect(x_of(1), y - 13, x_of(MOST) - x_of(1), LINE - 2, ROOM, 2)
        drawing.rect(LEFT, y - 9.5, x_of(ratio) - LEFT, 8, JOB if met else MISSED, 2)
        if ratio > LAST:  # it goes on beyond the scale
            drawing.path([(RIGHT, y - 12), (RIGHT + 8, y - 5.5), (RIGHT, y + 1)], MISSED)
        drawing.rect(x_of(1) - 1.2, y - 13, 2.4, LINE - 2, INK)
        figure(drawing, RATIO, y - 1.5, f"{ratio:.2f}", met)
    else:
        drawing.text(LEFT + 6, y - 1.5, "no floor: judged by its growth", 11, QUIET)
        figure(drawing, RATIO, y - 1.5, "–", None)
    figure(drawing, UNIT, y - 1.5, time_text(job / units), None)
    small = next((each for each in rows if each["job"] == row["job"] and each["points"] == 1000), None)
    if small and row["points"] > 1000:
        growth = (job / units) / (small["job_us"] / small["units"])
        figure(drawing, GROWTH, y - 1.5, f"{growth:.2f}", judged(result, row, "growth from 1,000 points"))
    if script:
        figure(drawing, FASTER, y - 1.5, f"{script / job:.1f}", judged(result, row, "times faster than the script"))


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        result = json.load(file)
    rows = result["jobs"]
    jobs = list(dict.fromkeys(row["job"] for row in rows))
    blocks = [[row for row in rows if row["job"] == job] for job in jobs]
    bottom = TOP + sum(len(block) * LINE + GAP for block in blocks)

    drawing = Drawing()
    y = TOP
    for number, block in enumerate(blocks):  # shades first, so that the grid lies over them
        height = len(block) * LINE + GAP
        if number % 2 == 0:
            drawing.rect(20, y, WIDTH - 40, height, SHADE, 4)
        y += height
    head(drawing, result, bottom)
    y = TOP
    for job, block in zip(jobs, blocks):
        name = job[0].upper() + job[1:]
        drawing.text(32, y + GAP / 2 + len(block) * LINE / 2 + 4, name, 12.5, weight="bold")
        for number, row in enumerate(block):
            draw_line(drawing, result, rows, row, y + GAP / 2 + (number + 1) * LINE - 3)
        y += len(block) * LINE + GAP
    met = sum(1 for found in result["goals"] if found["met"])
    drawing.text(32, bottom + 42, f"{met} of {len(result['goals'])} goals met: within {MOST} times the floor; a point no more "
                 "than 1.2 times dearer than at 1,000 points;", 12, QUIET)
    drawing.text(32, bottom + 58, "5 times faster than the script, where the parser and the yields are not nearly all of the job.",
                 12, QUIET)
    drawing.write(sys.argv[2], bottom + 78)


if __name__ == "__main__":
    main()
