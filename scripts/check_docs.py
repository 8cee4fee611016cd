#!/usr/bin/env python3
"""Checks that what the documents name is there.

    check_docs.py [--fix] [ROOT]

- Links in README.md, CONTRIBUTING.md, docs/ and samples/ lead to a file, and to a heading in it where they name one.
- Each decision (docs/decisions/*.md) has the paragraphs Rule, Why and Where. The files and tests that Where names
  exist: a token in backticks with a slash is a file or folder, NameTest a suite, NameTest.Case a test.
- docs/decisions/README.md lists every decision.
- A suite, test or fixture that any other document names is there too; FooTest is an example.
- docs/testing.md tells what each program of scripts/test-list proves.
- The last section of docs/host-guide.md has each error that the code of the DLLs names and each of idl/OrvHost.idl.

With --fix the list of decisions is written, a file that has moved and a test whose suite has another name are found
by their own name where only one has it. Exits 1 when findings are left.
"""
import re
import sys
from pathlib import Path

from whole_file import write_whole

HEADING = re.compile(r"^#{1,6} +(.+?) *$", re.MULTILINE)
LINK = re.compile(r"\[([^\]]*)\]\(([^)\s]+)\)")
TEST = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)
FIXTURE = re.compile(r"^\s*(?:class|struct|using) (\w+Test)\b", re.MULTILINE)
QUOTED = re.compile(r"`([^`\n]+)`")
PARTS = ["Rule", "Why", "Where"]
NOT_OURS = {".git", "build"}
# What the DLLs are made of, and the names of errors there.
SHIPPED = ("appobject", "com", "common", "component", "core", "dialogs", "host", "internal", "points", "types")
ERROR = re.compile(r"\b(?:(?:CLASS|CO|DISP|REGDB|RPC|TYPE)_)?E_[A-Z]{4,}\b")
ERROR_NUMBER = re.compile(r"\berr\w+ = (0x8[0-9A-F]{7})\b")
# An answer of others that the code asks for and hands to nobody.
NOT_ANSWERED = {"RPC_E_DISCONNECTED"}


def anchor(heading):
    """The name of a heading in a link."""
    text = LINK.sub(r"\1", heading).replace("`", "")
    return re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")


class Tree:
    """The files and tests of a clone."""

    def __init__(self, root):
        self.root = root
        self.by_name = {}
        for path in sorted(root.rglob("*")):
            inside = path.relative_to(root)
            if path.is_file() and not NOT_OURS.intersection(inside.parts):
                self.by_name.setdefault(path.name, []).append(inside.as_posix())
        self.tests = set()
        self.fixtures = set()
        self.suites_of = {}  # case -> the suites that have it
        for path in sorted((root / "tests").rglob("*")):
            if path.suffix in (".cpp", ".h"):
                text = path.read_text(encoding="utf-8")
                self.fixtures.update(FIXTURE.findall(text))
                for suite, case in TEST.findall(text):
                    self.tests.update((suite, f"{suite}.{case}"))
                    self.suites_of.setdefault(case, set()).add(suite)

    def documents(self):
        for pattern in ("README.md", "NOTICES.md", "CONTRIBUTING.md", "docs/**/*.md", "samples/**/*.md"):
            yield from sorted(self.root.glob(pattern))

    def decisions(self):
        return [path for path in sorted((self.root / "docs/decisions").glob("*.md")) if path.name != "README.md"]

    def has(self, token):
        return token in self.tests if is_test(token) else (self.root / token).exists()

    def elsewhere(self, token):
        """The one place where a token that is not there has gone, or None."""
        if not is_test(token):
            places = self.by_name.get(token.rsplit("/", 1)[-1], [])
        else:
            case = token.partition(".")[2]
            places = [f"{suite}.{case}" for suite in self.suites_of.get(case, ())]
        return places[0] if len(places) == 1 else None


def is_test(token):
    return re.fullmatch(r"\w+Test(\.\w+)?", token) is not None


def is_name(token):
    return is_test(token) or re.fullmatch(r"[\w.\-]+/[\w.\-/]*", token) is not None and not token.startswith("./")


def check_links(tree):
    for path in tree.documents():
        for _, target in LINK.findall(path.read_text(encoding="utf-8")):
            if re.match(r"\w+:", target):
                continue
            name, _, part = target.partition("#")
            file = (path.parent / name).resolve() if name else path
            inside = path.relative_to(tree.root)
            if not file.exists():
                yield f"{inside}: {target} is not there"
            elif part and part not in map(anchor, HEADING.findall(file.read_text(encoding="utf-8"))):
                yield f"{inside}: {target}: there is no such heading"


def blocks(text):
    """(heading, text below it) of each decision in a file."""
    for block in re.split(r"^## ", text, flags=re.MULTILINE)[1:]:
        heading, _, body = block.partition("\n")
        yield heading.strip(), body


def check_decisions(tree, fixes):
    for path in tree.decisions():
        text = path.read_text(encoding="utf-8")
        moved = {}
        for heading, body in blocks(text):
            where = f"{path.relative_to(tree.root)}: {heading}"
            if re.findall(r"^\*\*(\w+)\.\*\*", body, re.MULTILINE) != PARTS:
                yield f"{where}: the paragraphs are not Rule, Why and Where"
            for token in QUOTED.findall(body.partition("**Where.**")[2]):
                if not is_name(token) or tree.has(token):
                    continue
                place = tree.elsewhere(token)
                if fixes and place:
                    moved[f"`{token}`"] = f"`{place}`"
                else:
                    yield f"{where}: {token} is not there" + (f"; {place} is" if place else "")
        if moved:
            for old, new in moved.items():
                text = text.replace(old, new)
            write_whole(path, text.encode("utf-8"))


def check_tests(tree):
    """Tests that other documents than the decisions name, and the programs of the tests."""
    known = tree.tests | tree.fixtures | {"FooTest"}
    for path in tree.documents():
        if path in tree.decisions():
            continue
        text = path.read_text(encoding="utf-8")
        for token in QUOTED.findall(text):
            if re.match("[A-Z]", token) and is_test(token) and not token.endswith(".cpp") and token not in known:
                yield f"{path.relative_to(tree.root)}: {token} is not there"
    programs, table = tree.root / "scripts/test-list", tree.root / "docs/testing.md"
    if programs.exists() and table.exists():
        told = set(QUOTED.findall(table.read_text(encoding="utf-8")))
        for line in programs.read_text(encoding="utf-8").splitlines():
            words = line.partition("#")[0].split()
            if words and words[0] not in told:
                yield f"docs/testing.md: {words[0]} of scripts/test-list is not told"


def check_errors(tree):
    """Errors that a host can meet and its guide does not explain."""
    guide, services = tree.root / "docs/host-guide.md", tree.root / "idl/OrvHost.idl"
    if not guide.exists():
        return
    told = guide.read_text(encoding="utf-8").partition("\n## Errors\n")[2]
    met = set(ERROR_NUMBER.findall(services.read_text(encoding="utf-8"))) if services.exists() else set()
    for folder in SHIPPED:
        for path in sorted((tree.root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                met.update(ERROR.findall(path.read_text(encoding="utf-8")))
    for error in sorted(met - NOT_ANSWERED):
        if not re.search(rf"\b{error}\b", told):
            yield f"docs/host-guide.md: {error} is not told"


def index(tree, head):
    """The list of decisions, below what stands in front of it."""
    lines = [head.rstrip()]
    for path in tree.decisions():
        text = path.read_text(encoding="utf-8")
        title = HEADING.search(text).group(1)
        intro = text.split("\n## ", 1)[0].partition("\n")[2].strip()
        lines += ["", f"## [{title}]({path.name})", "", intro, ""]
        lines += [f"- [{heading}]({path.name}#{anchor(heading)})" for heading, _ in blocks(text)]
    return "\n".join(lines) + "\n"


def check_index(tree, fixes):
    path = tree.root / "docs/decisions/README.md"
    text = path.read_text(encoding="utf-8")
    wanted = index(tree, text.split("\n## ", 1)[0])
    if text == wanted:
        return
    if fixes:
        write_whole(path, wanted.encode("utf-8"))
    else:
        yield "docs/decisions/README.md: the list of decisions is old; check_docs.py --fix writes it"


def check(root, fixes=False):
    tree = Tree(root)
    looks = (check_decisions(tree, fixes), check_index(tree, fixes), check_tests(tree), check_links(tree),
             check_errors(tree))
    return [finding for look in looks for finding in look]


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--fix"]
    folder = Path(arguments[0]) if arguments else Path(__file__).parent.parent
    found = check(folder.resolve(), "--fix" in sys.argv)
    print("\n".join(found), end="\n" if found else "")
    sys.exit(1 if found else 0)
