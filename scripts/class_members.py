#!/usr/bin/env python3
"""Writes the members of the dispinterfaces of the component's classes.

    class_members.py FOLDER OUTPUT

FOLDER has the IDL files. For each class of O_Tam_id.idl that names a dispinterface, OUTPUT gets NAME.idl with all that
a script reaches by name on an object of the class, by the rules of com/Dispatch.cpp:

- a name has the number that the first interface with the name gives it;
- each kind of access comes from the first interface that has it. A write and a write by reference are one kind.
"""

import re
import sys
from pathlib import Path

from whole_file import write_whole

QUOTED = r'"(?:[^"\\]|\\.)*"'
INTERFACE = re.compile(r"interface\s+(\w+)\s*:\s*IDispatch\s*\{(.*?)\n\s*\}", re.DOTALL)
MEMBER = re.compile(
    rf"\[((?:{QUOTED}|[^\]\"])*)\]\s*HRESULT\s+(\w+)\s*\(((?:\[(?:{QUOTED}|[^\]\"])*\]|[^()\[\]])*)\)\s*;", re.DOTALL
)
PARAMETER = re.compile(rf"\[((?:{QUOTED}|[^\]\"])*)\]\s*([^,]*?)\s*(\w+)\s*(?:,|$)", re.DOTALL)
COCLASS = re.compile(r"coclass\s+(\w+)\s*\{(.*?)\}", re.DOTALL)
HELP = re.compile(rf"helpstring\(({QUOTED})\)")
KINDS = ("propget", "propputref", "propput")


def read_whole(folder, name):
    """The text of an IDL file without comments, with what it includes and imports from the folder."""
    text = re.sub(r"^\s*//.*$", "", (folder / name).read_text(encoding="utf-8"), flags=re.MULTILINE)

    def included(match):
        other = match.group(1)
        return read_whole(folder, other) if (folder / other).exists() else ""

    return re.sub(r'^\s*(?:#include|import) "([^"]+)";?$', included, text, flags=re.MULTILINE)


class Member:
    def __init__(self, attributes, name, parameters):
        self.name = name
        self.help = "".join(HELP.findall(attributes))
        words = re.sub(QUOTED, "", attributes)
        self.id = re.search(r"\bid\(([^)]*)\)", words).group(1)
        self.kind = next((kind for kind in KINDS if re.search(rf"\b{kind}\b", words)), "call")
        self.is_restricted = "restricted" in words
        self.result = "void"
        self.arguments = []
        for flags, kind, argument in PARAMETER.findall(parameters):
            if "retval" in flags:
                self.result = kind.strip().removesuffix("*")
            else:
                self.arguments.append(f"[{flags}] {kind} {argument}")

    def access(self):
        return "propput" if self.kind == "propputref" else self.kind

    def text(self, number, help_text):
        attributes = [f"id({number})"]
        if self.kind != "call":
            attributes.append(self.kind)
        if self.is_restricted:
            attributes.append("restricted")
        if help_text:
            attributes.append(f"helpstring({help_text})")
        return f"[{', '.join(attributes)}] {self.result} {self.name}({', '.join(self.arguments)});\n"


def members_of(interfaces):
    """The lines of one dispinterface."""
    by_name = {}
    for interface in interfaces:
        for member in interface:
            kinds = by_name.setdefault(member.name, {})
            kinds.setdefault(member.access(), member)
    lines = []
    for kinds in by_name.values():
        first = next(iter(kinds.values()))
        if "call" in kinds and len(kinds) > 1:
            raise SystemExit(f"class_members.py: {first.name} is a method and a property")
        # The help stands at the first of a name's entries, which is the one that object browsers show.
        help_text = next((member.help for member in kinds.values() if member.help), "")
        for member in kinds.values():
            lines.append(member.text(first.id, help_text))
            help_text = ""
    return "".join(lines)


def main():
    folder, output = Path(sys.argv[1]), Path(sys.argv[2])
    text = read_whole(folder, "O_Tam_id.idl")
    interfaces = {
        name: [Member(*member) for member in MEMBER.findall(body)] for name, body in INTERFACE.findall(text)
    }
    output.mkdir(parents=True, exist_ok=True)
    for _, body in COCLASS.findall(text):
        named = re.search(r"\bdispinterface\s+(\w+);", body)
        if named:
            faces = [interfaces[name] for name in re.findall(r"(?<!disp)\binterface\s+(\w+);", body)]
            path = output / f"{named.group(1)}.idl"
            lines = members_of(faces)
            if not path.exists() or path.read_text(encoding="utf-8") != lines:
                write_whole(path, lines.encode("utf-8"))


if __name__ == "__main__":
    main()
