"""The installer, made by makensis from packaging/setup.nsi and lists of the files that it brings."""

import os
import posixpath
import subprocess
import sys
import tempfile
from pathlib import Path

from package_programs import PROGRAMS

# The lists in setup.nsi, and the beginnings of the names in each. The first that fits takes a file.
GROUPS = (
    ("Bench32", (*(f"win32/{name}" for name in PROGRAMS), "win32/samples/")),
    ("Bench64", (*(f"win64/{name}" for name in PROGRAMS), "win64/samples/")),
    ("Win32", ("win32/",)),
    ("Win64", ("win64/",)),
    ("Samples", ("samples/",)),
    ("Common", ("",)),
)


def group_of(name):
    return next(group for group, starts in GROUPS if name.startswith(starts))


def folders_of(names):
    """Every folder of the names, those inside others first: so each is empty when its turn to be removed comes."""
    folders = set()
    for name in names:
        folder = posixpath.dirname(name)
        while folder:
            folders.add(folder)
            folder = posixpath.dirname(folder)
    return sorted(folders, key=lambda folder: (-folder.count("/"), folder))


def quoted(text):
    """A text in the words of makensis; names with its signs of variables are none of ours."""
    if "$" in text or '"' in text:
        sys.exit(f"{text}: such a name cannot be installed")
    return f'"{text}"'


def backslashed(name):
    return name.replace("/", "\\")


def file_lists(names, stage):
    """The lists as text: a macro for each group that brings its files, one that removes all of them, and one that
    refuses when a binary is in use."""
    lines = []
    for group, _ in GROUPS:
        lines.append(f"!macro Install{group}")
        folder = None
        for name in sorted((name for name in names if group_of(name) == group), key=posixpath.split):
            if posixpath.dirname(name) != folder:
                folder = posixpath.dirname(name)
                lines.append(f'  SetOutPath "$INSTDIR\\{backslashed(folder)}"' if folder else '  SetOutPath "$INSTDIR"')
            lines.append(f"  File {quoted(str(stage / name))}")
        lines.append("!macroend")
    lines.append("!macro RemoveFiles")
    lines += [f'  Delete "$INSTDIR\\{backslashed(name)}"' for name in sorted(names)]
    lines += [f'  RMDir "$INSTDIR\\{backslashed(folder)}"' for folder in folders_of(names)]
    lines.append("!macroend")
    lines.append('!macro RefuseAnyInUse prefix')
    lines += [f'  !insertmacro InUse "${{prefix}}" {quoted(backslashed(name))}' for name in sorted(names)
              if name.endswith((".dll", ".exe"))]
    lines.append("!macroend")
    return "\n".join(lines) + "\n"


def installer_bytes(files, version, moment, sign=None):
    """The installer of files, a map of names to bytes. sign is the command that signs the file after it."""
    script = Path(__file__).resolve().parent.parent / "packaging/setup.nsi"
    with tempfile.TemporaryDirectory() as folder:
        stage, lists, output = Path(folder) / "stage", Path(folder) / "files.nsh", Path(folder) / f"O_Tam_id-{version}-setup.exe"
        for name, content in files.items():
            path = stage / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
        lists.write_text(file_lists(files, stage), encoding="utf-8")
        command = ["makensis", "-V2", "-WX", "-INPUTCHARSET", "UTF8", f"-DVERSION={version}", f"-DFILES={lists}",
                   f"-DOUTPUT={output}"]
        if sign:
            command.append(f"-DSIGN={sign}")
        # A session of its own: makensis sets its terminal, which stops it when it runs in the background.
        made = subprocess.run([*command, str(script)], stdin=subprocess.DEVNULL, start_new_session=True,
                              capture_output=True, text=True, cwd=script.parent,
                              env={**os.environ, "SOURCE_DATE_EPOCH": str(moment)})
        if made.returncode != 0:
            sys.exit(f"makensis failed:\n{made.stdout}{made.stderr}")
        return output.read_bytes()
