#!/usr/bin/env python3
"""Looks at pages in a browser and says, as one JSON document, what a person would
see: at several widths, in light and in dark, on paper, by keyboard and read aloud.

    scripts/look_at_page.py FILE...

Debian's own python3 runs it: it needs python3-html5lib, tidy, poppler-utils and
a browser."""
import json
import re
import subprocess
import sys
import tempfile

import html5lib

from browser import Browser

WIDTHS = (360, 768, 1600)
# A <title> of SVG may have an identifier; tidy knows that of HTML only.
TIDY_IS_WRONG = '<title> proprietary attribute "id"'

# Texts that can be seen, with their contrast; what is wider than its place; headings of columns that stand on
# another side than what is below them.
LOOK = r"""
(() => {
  const numbers = colour => (colour.match(/[\d.]+/g) || []).map(Number);
  const isOpaque = colour => { const n = numbers(colour); return n.length === 3 || n[3] === 1; };
  const luminance = colour => {
    const [r, g, b] = numbers(colour).slice(0, 3).map(n => n / 255)
      .map(n => n <= 0.04045 ? n / 12.92 : ((n + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const contrast = (a, b) => {
    const [x, y] = [luminance(a), luminance(b)];
    return (Math.max(x, y) + 0.05) / (Math.min(x, y) + 0.05);
  };
  const isShape = element => element instanceof SVGGeometryElement;
  const groundOf = (element, x, y) => {
    const stack = document.elementsFromPoint(x, y);
    const from = stack.indexOf(element);
    if (from < 0) return null;
    for (const below of stack.slice(from)) {
      if (below instanceof SVGTextElement) continue;
      const style = getComputedStyle(below);
      const colour = isShape(below) ? style.fill : style.backgroundColor;
      if (colour !== 'none' && isOpaque(colour)) return colour;
    }
    return 'rgb(255, 255, 255)';
  };
  const result = {texts: 0, faint: [], covered: [], wide: [], askew: [],
                  overflow: document.documentElement.scrollWidth - innerWidth};
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  for (let node = walker.nextNode(); node; node = walker.nextNode()) {
    const element = node.parentElement;
    if (!node.data.trim() || ['STYLE', 'title', 'desc'].includes(element.tagName)) continue;
    if (element.closest('.skip')) continue;
    const range = document.createRange();
    range.selectNodeContents(node);
    const box = [...range.getClientRects()].find(b => b.width > 1 && b.height > 1);
    if (!box || !element.checkVisibility()) continue;
    const head = element.closest('thead');
    if (head && getComputedStyle(head).position === 'absolute') continue;
    ++result.texts;
    const whole = range.getBoundingClientRect();
    if (whole.left < -0.5 || whole.right > innerWidth + 0.5) result.wide.push(node.data);
    const ground = groundOf(element, box.left + box.width / 2, box.top + box.height / 2);
    if (ground === null) { result.covered.push(node.data); continue; }
    const style = getComputedStyle(element);
    const ratio = contrast(element instanceof SVGTextElement ? style.fill : style.color, ground);
    if (ratio < 4.5) result.faint.push(`${node.data}: ${ratio.toFixed(2)}`);
  }
  for (const element of document.querySelectorAll('body *')) {
    const box = element.getBoundingClientRect();
    if (box.width && element.checkVisibility() && !element.closest('.skip, thead') &&
        (box.left < -0.5 || box.right > innerWidth + 0.5 || element.scrollWidth > element.clientWidth + 1 &&
         element.clientWidth && getComputedStyle(element).display !== 'inline'))
      result.wide.push(element.outerHTML.slice(0, 80));
  }
  const sideOf = cell => getComputedStyle(cell).textAlign.replace('start', 'left');
  for (const table of document.querySelectorAll('table')) {
    const cells = table.tBodies[0]?.rows[0]?.cells;
    if (!table.tHead || !cells || getComputedStyle(table.tHead).position === 'absolute') continue;
    for (const heading of table.tHead.rows[0].cells)
      if (cells[heading.cellIndex] && sideOf(heading) !== sideOf(cells[heading.cellIndex]))
        result.askew.push(heading.textContent);
  }
  return result;
})()"""

FOCUS = r"""
(() => {
  const element = document.activeElement;
  const style = getComputedStyle(element);
  const box = element.getBoundingClientRect();
  return {text: element.textContent, tag: element.tagName, isOutlined: parseFloat(style.outlineWidth) >= 2,
          isSeen: box.right > 0 && box.bottom > 0};
})()"""


def focus_order(page):
    """Where the Tab key goes, once around."""
    order = []
    while len(order) < 50:
        page.press("Tab")
        place = page.evaluate(FOCUS)
        if place["tag"] == "BODY" or place in order:
            break
        order.append(place)
    return order


def paper(page):
    """The sheets of paper: their number, size and the texts of each."""
    with tempfile.NamedTemporaryFile(suffix=".pdf") as file:
        file.write(page.print())
        file.flush()
        about = subprocess.run(["pdfinfo", file.name], check=True, capture_output=True, text=True).stdout
        texts = subprocess.run(["pdftotext", "-layout", file.name, "-"], check=True, capture_output=True,
                               text=True).stdout
    return {"pages": int(re.search(r"Pages: +(\d+)", about)[1]),
            "size": re.search(r"Page size: +(.*)", about)[1],
            "numbers": re.findall(r"Page \d+ of \d+", texts),
            "texts": texts}


def faults_of_form(path):
    """What two validators say of the text."""
    with open(path, encoding="utf-8") as file:
        text = file.read()
    parser = html5lib.HTMLParser()
    parser.parse(text)
    faults = [f"line {place[0]}: {code} {details}" for place, code, details in parser.errors]
    said = subprocess.run(["tidy", "-quiet", "-errors", "-utf8", path], capture_output=True, text=True).stderr
    return faults + [line for line in said.splitlines() if line.strip() and TIDY_IS_WRONG not in line]


def look_at(browser, path):
    views = []
    for scheme in ("light", "dark"):
        for width in WIDTHS:
            page = browser.open(path, width=width, scheme=scheme)
            page.whole()
            view = {"width": width, "scheme": scheme, **page.evaluate(LOOK)}
            view["requests"] = page.requests()
            view["messages"] = page.messages()
            tree = page.tree()
            view["roles"] = {role: sum(1 for other, _ in tree if other == role) for role, _ in tree}
            view["nameless"] = [role for role, name in tree if role in ("image", "link", "img", "graphics-document")
                                and not name.strip()]
            view["tables"] = [name for role, name in tree if role == "table"]
            view["focus"] = focus_order(page)
            views.append(view)
            page.close()
    page = browser.open(path, scheme="dark")
    result = {"file": path, "form": faults_of_form(path), "views": views, "paper": paper(page),
              "scripts": page.evaluate("document.scripts.length"),
              "title": page.evaluate("document.title")}
    page.close()
    return result


def main():
    with Browser() as browser:
        print(json.dumps([look_at(browser, path) for path in sys.argv[1:]], indent=1))


if __name__ == "__main__":
    main()
