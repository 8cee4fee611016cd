#!/usr/bin/env python3
"""Compiles each header alone that no source includes first.

    check_headers.py BUILD OTHER_BUILD... -- HEADER...

Most headers are compiled alone already, where there are no precompiled headers: a source includes its own header
first. So those that a source of the other builds includes first are left out. The rest is compiled as the first
build compiles a source of the same folder, but without its precompiled header. Exits 1 when one does not compile.
"""

import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

FIRST_INCLUDE = re.compile(r"^[ \t]*#[ \t]*include[ \t]*[\"<]([^\">\n]+)[\">]", re.MULTILINE)
# The file that includes several sources, which are compiled as one.
UNITED = "unity_*.cxx"
# The options that end in a file of the build's, and how many words they take.
WORDS_OF = {"-o": 2, "-c": 2, "-include": 2, "-Winvalid-pch": 1}


def place_of(source):
    """A source of the project: of several that are compiled as one, the first."""
    if not source.match(UNITED):
        return source
    return Path(FIRST_INCLUDE.search(source.read_text(encoding="utf-8"))[1])


def compile_commands(build):
    """Source -> the words of its command."""
    with (Path(build) / "compile_commands.json").open(encoding="utf-8") as file:
        entries = json.load(file)
    return {place_of(Path(entry["file"])): shlex.split(entry["command"]) for entry in entries
            if entry["file"].endswith(".cpp") or Path(entry["file"]).match(UNITED)}


def first_header(source):
    """The header that a source includes first; None when it is not one of the project's."""
    match = FIRST_INCLUDE.search(source.read_text(encoding="utf-8"))
    folders = (source.parent, *source.parents) if match else ()
    return next((folder / match[1] for folder in folders if (folder / match[1]).is_file()), None)


def options_of(command):
    """The options of a compile command without its files."""
    options, at = [], 0
    while at < len(command):
        words = WORDS_OF.get(command[at], 0)
        if not words:
            options.append(command[at])
        at += words or 1
    return options


def options_for(header, commands):
    """The options of the source nearest to a header; of several the one that sees the most folders."""
    def nearness(source):
        shared = len(os.path.commonpath([header.parent, source.parent]))
        folders = sum(word == "-isystem" or word.startswith("-I") for word in commands[source])
        return shared, folders, -len(source.parent.parts)

    return options_of(commands[max(commands, key=nearness)])


def complaints(header, commands):
    """What the compiler says of a header that it does not compile."""
    command = [*options_for(header, commands), "-fsyntax-only", "-x", "c++", "-"]
    run = subprocess.run(command, input=f'#include "{header}"\n', capture_output=True, text=True, check=False)
    return run.stderr if run.returncode else ""


def main():
    separator = sys.argv.index("--")
    build, *others = sys.argv[1:separator]
    compiled = {first_header(source) for other in others for source in compile_commands(other)}
    headers = [header for header in map(Path, sys.argv[separator + 1:]) if header not in compiled]
    commands = compile_commands(build)
    with ThreadPoolExecutor(len(os.sched_getaffinity(0))) as workers:
        found = list(filter(None, workers.map(lambda header: complaints(header, commands), headers)))
    print("".join(found), end="")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
