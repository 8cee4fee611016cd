"""The binaries that users get, and how a built one is taken: the one list for the zip, the installer and the tests."""

import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

from package_sign import with_signature

DLLS = ("O_Tam_id.dll", "OrvHost.dll")
# The bench and the window on a module: with the DLLs in each folder of a kind, and a component of the installer.
PROGRAMS = ("tambench.exe", "tamview.exe")
# What the build puts beside them, and what of it is for users: not the example of a host.
BESIDE = ("O_Tam_id.xml", "O_Tam_id.ico", "O_Tam_id.pdf", "*.Classes.manifest", "channels/*.xml", "samples/**/*.xml")
MACHINES = {"win32": 0x14C, "win64": 0x8664}
# The tool chain's name of each kind, as its tools begin.
TOOLS = {"win32": "i686-w64-mingw32", "win64": "x86_64-w64-mingw32"}


def file_version(content):
    """The version in a binary's VERSIONINFO as four numbers in a text; None when it has none."""
    # The signature and the structure's own version: a program that reads versions has the signature in its code.
    at = content.find(struct.pack("<II", 0xFEEF04BD, 0x10000))
    if at < 0:
        return None
    high, low = struct.unpack_from("<II", content, at + 8)
    return ".".join(str(part) for part in (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF))


def machine_of(content):
    """The kind of processor that a binary is for, as its header says it."""
    return struct.unpack_from("<H", content, struct.unpack_from("<I", content, 0x3C)[0] + 4)[0]


def read_program(path, kind):
    """The bytes of a binary, which must be of the kind that its place in the package says."""
    if not path.is_file():
        sys.exit(f"{path} is not there: was {kind} built?")
    content = path.read_bytes()
    if machine_of(content) != MACHINES[kind]:
        sys.exit(f"{path} is not for {kind}")
    return content


def read_binary(path, kind, version):
    """The same of a binary for users, which must have the project's version."""
    content = read_program(path, kind)
    if file_version(content) != f"{version}.0":
        sys.exit(f"{path} has the version {file_version(content)}, and the project {version}: build it again.")
    return with_signature(content)


def stripped(content, kind):
    """A program without its symbols, which nobody reads who cannot build it, and with no time in it."""
    with tempfile.TemporaryDirectory() as folder:
        whole, bare = Path(folder) / "whole.exe", Path(folder) / "bare.exe"
        whole.write_bytes(content)
        subprocess.run([f"{TOOLS[kind]}-strip", "-o", str(bare), str(whole)], check=True)
        return without_time(bare.read_bytes())


def without_time(content):
    """A program whose header has no time of the link; the linker's check sum, which covers it, goes with it."""
    made = bytearray(content)
    header = struct.unpack_from("<I", made, 0x3C)[0]
    struct.pack_into("<I", made, header + 8, 0)
    struct.pack_into("<I", made, header + 24 + 64, 0)
    return bytes(made)


def built_files(build, kind, version):
    """Names and bytes of one kind's files, under the folder of its name."""
    folder = build / kind / "bin"
    files = {f"{kind}/{name}": read_binary(folder / name, kind, version) for name in DLLS + PROGRAMS}
    for pattern in BESIDE:
        for path in sorted(folder.glob(pattern)):
            files[f"{kind}/{path.relative_to(folder).as_posix()}"] = path.read_bytes()
    return files


def tracked(root, *places):
    """The files under the places that belong to the project. What only lies there does not go into a package."""
    listed = subprocess.run(["git", "-C", str(root), "ls-files", "-z", "--", *places], check=True, capture_output=True)
    return {name: (root / name).read_bytes() for name in listed.stdout.decode("utf-8").split("\0") if name}


def with_names(files, pattern, replacement):
    """The files with their names changed."""
    return {re.sub(pattern, replacement, name): content for name, content in files.items()}
