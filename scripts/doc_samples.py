#!/usr/bin/env python3
"""Takes the samples out of the documents, for the build and the tests.

    doc_samples.py OUTPUT

OUTPUT gets a file for each program: README_1.cpp is the first C++ sample of README.md, README_1.vbs its first one in
VBScript. commands.txt gets a line for each command that the tests run: the document with the line, the folder and the
command, with tabs between them. Python samples are compiled. A sample that nobody runs, compiles or names here as not
run fails: exit status 1.
"""
import re
import sys
from pathlib import Path

from whole_file import write_whole

ROOT = Path(__file__).resolve().parent.parent
DOCUMENTS = ("README.md", "docs/host-guide.md", "docs/check.md", "docs/device-sheet.md", "docs/view.md",
             "samples/clients/README.md")
FENCE = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
SUFFIX = {"cpp": "cpp", "vb": "vbs", "python": "py"}
# A table, a listing of messages, what only Windows has.
NOT_RUN = {"", "xml", "powershell"}
RUN = {"sh": re.compile(r"(?:\.\./)*(?:\./)?tam wine (.+)"), "bat": re.compile(r"((?:regsvr32|cscript) .+)")}
# The tests are part of some of these, and others do their work; the build itself does the rest.
DONE_ELSEWHERE = {"sh": (
    re.compile(r"\./tam (?:run|test|build\b.*|view\b.*)"),
    re.compile(r"cmake -G Ninja -S sdk/example -B build/example .*"),
    re.compile(r"cmake --build build/example"),
    re.compile(r"cmake (?:--build )?--preset native-release"),  # ./tam check builds tamcheck
), "bat": (
    re.compile(r"(?:powershell|py) .*"),  # which Wine has not
    re.compile(r"set O_TAM_ID_UNATTENDED=.*|cscript //nologo night\.vbs"),  # the reader's own script
)}


def commands(text, language="sh"):
    """(line within the text, folder from the top, command that the tests run), or a ValueError."""
    folder = "."
    for number, line in enumerate(text.splitlines()):
        command = line.split(" #")[0].strip()
        if not command:
            continue
        if command.startswith("cd "):
            folder = command[3:]
        elif any(pattern.fullmatch(command) for pattern in DONE_ELSEWHERE[language]):
            continue
        elif RUN[language].fullmatch(command):
            yield number, folder, RUN[language].fullmatch(command).group(1)
        else:
            raise ValueError(f"nobody runs \"{command}\"")


def main():
    output = Path(sys.argv[1])
    output.mkdir(parents=True, exist_ok=True)
    faults, lines = [], []
    for document in DOCUMENTS:
        text = (ROOT / document).read_text(encoding="utf-8")
        counts = {}
        for block in FENCE.finditer(text):
            language, body = block.groups()
            place = text.count("\n", 0, block.start()) + 2
            try:
                if language in RUN:
                    lines += [f"{document}:{place + at}\t{folder}\t{run}"
                              for at, folder, run in commands(body, language)]
                elif language in SUFFIX:
                    counts[language] = counts.get(language, 0) + 1
                    name = f"{Path(document).stem}_{counts[language]}.{SUFFIX[language]}"
                    write_whole(output / name, body.encode("utf-8"))
                    if language == "python":
                        compile(body, name, "exec")
                elif language not in NOT_RUN or body.startswith("./tam"):
                    raise ValueError(f"nobody knows a sample in {language}")
            except (ValueError, SyntaxError) as error:
                faults.append(f"{document}:{place}: {error}")
    for client in sorted((ROOT / "samples/clients").glob("*.py")):
        try:
            compile(client.read_text(encoding="utf-8"), client.name, "exec")
        except SyntaxError as error:
            faults.append(str(error))
    write_whole(output / "commands.txt", ("\n".join(lines) + "\n").encode("utf-8"))
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    main()
