#!/usr/bin/env python3
"""Takes the pictures of a device sheet that docs/device-sheet.md shows.

    scripts/sheet_pictures.py SHEET FOLDER"""
import pathlib
import subprocess
import sys
import tempfile

from browser import Browser

# Name, width, height, scheme, scale
VIEWS = (("sheet-wide", 1600, 1500, "light", 1), ("sheet-tablet", 768, 1400, "dark", 1),
         ("sheet-narrow", 360, 1500, "light", 1.5))


def shrink(path):
    """As few bytes as show the same."""
    subprocess.run(["convert", path, "-strip", "-define", "png:compression-level=9", "+dither", "-colors", "250",
                    "PNG8:" + str(path)], check=True)


def main():
    sheet, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    with Browser() as browser, tempfile.TemporaryDirectory() as scratch:
        for name, width, height, scheme, scale in VIEWS:
            page = browser.open(sheet, width, height, scheme, scale)
            (folder / f"{name}.png").write_bytes(page.picture())
            page.close()
            shrink(folder / f"{name}.png")
        page = browser.open(sheet)
        paper = pathlib.Path(scratch) / "paper.pdf"
        paper.write_bytes(page.print())
        subprocess.run(["pdftoppm", "-r", "80", "-png", "-l", "2", paper, pathlib.Path(scratch) / "page"], check=True)
        pages = sorted(pathlib.Path(scratch).glob("page*.png"))
        subprocess.run(["convert", *pages, "-bordercolor", "#8a96a3", "-border", "1", "+append",
                        folder / "sheet-paper.png"], check=True)
        shrink(folder / "sheet-paper.png")


if __name__ == "__main__":
    main()
