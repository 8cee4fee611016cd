#!/usr/bin/env python3
"""Which folder includes which, and whether that runs downward only.

    scripts/check_layers.py            check; prints what is wrong, ends with 1 then
    scripts/check_layers.py --draw     print the table of docs/architecture.md

A folder may include what its library links, directly or through another one
(tam_layer, target_link_libraries in its CMakeLists.txt). The build sees to it
for what is compiled; this also sees headers that nobody includes, paths that go
around the search path ("../"), whether the table in docs/architecture.md is the
one of today, and whether clang-tidy looks at the headers of every folder."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# From the ground up. A folder sees those above it in this list, where it says so.
MAY_SEE = {
    "core": [],
    "drawing": [],
    "batch": ["core"],
    "page": ["drawing"],
    "check": ["core", "batch"],
    "diff": ["core", "batch", "check"],
    "tamcheck": ["batch", "check"],
    "com": ["core"],
    "common": ["core", "com"],
    "types": ["core", "com", "common"],
    "dialogs": ["core", "com", "common"],
    "points": ["core", "com", "common", "types", "dialogs"],
    "appobject": ["core", "com", "common", "types", "dialogs", "points"],
    "internal": ["core", "com", "common"],
    "component": ["core", "com", "common", "types", "dialogs", "points", "appobject", "internal"],
    "view/model": ["core", "drawing", "check"],
    "host": ["core", "com"],
    "bench": ["core", "com", "batch", "drawing", "page", "check", "diff"],
    "view": ["core", "com", "batch", "drawing", "page", "check", "view/model", "bench"],
}
WHAT = {
    "core": "pure code: parsers, texts, collections, the states of dialogs",
    "drawing": "a module as a block: shapes, and SVG of them",
    "batch": "many files at once: which they are, in which order, how far",
    "page": "the device sheet: one page of HTML",
    "check": "what is wrong with a document",
    "diff": "what changed between two documents",
    "tamcheck": "the checks as a program of this machine",
    "com": "COM plumbing and the DOM, for the component, the host services and the bench",
    "common": "what the component's classes share: state, reports, the host's message loop",
    "types": "network variable types of the catalogue",
    "dialogs": "the editors and forms as windows",
    "points": "inputs, outputs, attributes and their collections",
    "appobject": "the module object",
    "internal": "the channel objects and their manager",
    "component": "the DLL: exports, classes table, resources",
    "view/model": "what the window shows and keeps, without a window",
    "host": "the host services, `OrvHost.dll`",
    "bench": "`tambench.exe`, a host on a command line",
    "view": "`tamview.exe`, a module in a window",
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
LOOKED_AT = re.compile(r"^HeaderFilterRegex: '\(([^)]*)\)/", re.MULTILINE)
BEGIN, END = "<!-- layers: scripts/check_layers.py --draw -->", "<!-- end of layers -->"


def includes():
    """(file, included path) of every quoted include of the layers."""
    for folder in MAY_SEE:
        for path in sorted((ROOT / folder).glob("*")):
            if path.suffix in (".h", ".cpp", ".rc", ".inc"):
                for name in INCLUDE.findall(path.read_text(encoding="utf-8")):
                    yield path.relative_to(ROOT), name


def draw(arrows):
    lines = ["| folder | what it is | includes |", "| --- | --- | --- |"]
    for folder in MAY_SEE:
        seen = [other for other in MAY_SEE if other in arrows.get(folder, set())]
        lines.append(f"| `{folder}/` | {WHAT[folder]} | {', '.join(f'`{other}/`' for other in seen) or '–'} |")
    return "\n".join(lines)


def main():
    arrows, findings = {}, []
    for path, name in includes():
        folder = path.parent.as_posix()
        if ".." in pathlib.PurePosixPath(name).parts:
            findings.append(f"{path}: {name} goes around the layers")
            continue
        other = name.rpartition("/")[0]
        if other not in MAY_SEE or other == folder:
            continue
        arrows.setdefault(folder, set()).add(other)
        if other not in MAY_SEE[folder]:
            findings.append(f"{path}: {folder}/ may not see {name}")
    if sys.argv[1:] == ["--draw"]:
        print(draw(arrows))
        return 0
    text = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")
    drawn = text.partition(BEGIN)[2].partition(END)[0].strip()
    if drawn != draw(arrows):
        findings.append("docs/architecture.md: the table of layers is not today's (--draw prints it)")
    looked_at = LOOKED_AT.search((ROOT / ".clang-tidy").read_text(encoding="utf-8"))
    if looked_at is None or looked_at[1] != "|".join(MAY_SEE):
        findings.append(f".clang-tidy: HeaderFilterRegex is to begin with ({'|'.join(MAY_SEE)})/")
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
