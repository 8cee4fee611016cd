#!/usr/bin/env python3
"""Compares every version that is written down with that of project() in CMakeLists.txt.

    check_version.py [ROOT]

Resource scripts, the bench and the packages take the version from CMake. What cannot include it is compared here:
- a manifest's own assemblyIdentity, all four numbers;
- a type library's version and help text, the first two numbers: a library's version has no more;
- the newest release in docs/changelog.md, which has to have one: it goes out with the packages;
- a resource script or CMake file has no version of its own.
Exits 1 when findings are left.
"""
import re
import sys
from pathlib import Path

PROJECT = re.compile(r"^project\(O_Tam_id VERSION (\d+\.\d+\.\d+)\b", re.MULTILINE)
# Between the start of the assembly and its first dependency or file: the file's own identity.
IDENTITY = re.compile(r'<assemblyIdentity type="win32" name="(?!Microsoft\.)[\w.]+" version="(\d+(?:\.\d+)*)"')
LIBRARY = re.compile(r'\bversion\((\d+\.\d+)\),\s*helpstring\("\w+ (\d+\.\d+):')
RELEASE = re.compile(r"^## \[(\d+\.\d+\.\d+)\]", re.MULTILINE)
RESOURCE = re.compile(r'(?:^(?:FILE|PRODUCT)VERSION +|"(?:File|Product)Version", *)("?\d[\d.,]*"?)', re.MULTILINE)
NOT_OURS = {".git", "build", "dist"}


def project_version(root):
    """The version that everything else follows, as three numbers in a text."""
    found = PROJECT.search((Path(root) / "CMakeLists.txt").read_text(encoding="utf-8"))
    if not found:
        sys.exit("CMakeLists.txt has no project(O_Tam_id VERSION …)")
    return found.group(1)


def written_versions(root, version):
    """(file, what stands there, what should) for each version in the tree."""
    short = version.rsplit(".", 1)[0]
    for path in sorted(root.rglob("*")):
        inside = path.relative_to(root)
        if NOT_OURS.intersection(inside.parts) or not path.name.endswith((".manifest", ".manifest.in", ".idl", ".rc")):
            continue
        text = path.read_text(encoding="utf-8")
        if ".manifest" in path.suffixes:
            yield from ((inside, found, f"{version}.0") for found in IDENTITY.findall(text))
        elif path.suffix == ".idl":
            yield from ((inside, found, short) for pair in LIBRARY.findall(text) for found in pair)
        else:
            yield from ((inside, found, "the macros of version.h") for found in RESOURCE.findall(text))
    releases = RELEASE.findall((root / "docs/changelog.md").read_text(encoding="utf-8"))
    yield Path("docs/changelog.md"), releases[0] if releases else "none", version


def main(arguments):
    root = Path(arguments[0]) if arguments else Path(__file__).resolve().parent.parent
    version = project_version(root)
    findings = [f"{path}: version {found}, wanted {wanted}"
                for path, found, wanted in written_versions(root, version) if found != wanted]
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
