#!/usr/bin/env python3
"""Writes what a Windows user gets into a folder, out of the Windows builds.

    package.py BUILD DIST

BUILD holds the builds win32 and win64. DIST gets the zip, a bill of materials and SHA256SUMS. The same commit
gives the same bytes wherever it is packed: times come from SOURCE_DATE_EPOCH, or from the commit.
"""
import os
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

from check_version import project_version
from package_pages import Pages, page_name
from package_sbom import sbom_bytes
from package_zip import sums_text, zip_bytes
from whole_file import write_whole

ROOT = Path(__file__).resolve().parent.parent
# What the build puts beside the component, and what of it is for users: not the example of a host.
BINARIES = ("O_Tam_id.dll", "OrvHost.dll", "tambench.exe")
BESIDE = ("O_Tam_id.xml", "O_Tam_id.ico", "O_Tam_id.pdf", "*.Classes.manifest", "channels/*.xml", "samples/**/*.xml")
MACHINES = {"win32": 0x14C, "win64": 0x8664}


def moment_of(root):
    """The time of everything in the packages, in seconds since 1970."""
    given = os.environ.get("SOURCE_DATE_EPOCH")
    if given is None:
        given = subprocess.run(["git", "-C", str(root), "log", "-1", "--format=%ct"], check=True, capture_output=True,
                               text=True).stdout
    return int(given)


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


def read_binary(path, kind, version):
    """The bytes of a binary, which must be of the kind and the version that its place in the package says."""
    if not path.is_file():
        sys.exit(f"{path} is not there: was {kind} built?")
    content = path.read_bytes()
    if machine_of(content) != MACHINES[kind]:
        sys.exit(f"{path} is not for {kind}")
    if file_version(content) != f"{version}.0":
        sys.exit(f"{path} has the version {file_version(content)}, and the project {version}: build it again.")
    return content


def built_files(build, kind, version):
    """Names and bytes of one kind's files, under the folder of its name."""
    folder = build / kind / "bin"
    files = {f"{kind}/{name}": read_binary(folder / name, kind, version) for name in BINARIES}
    for pattern in BESIDE:
        for path in sorted(folder.glob(pattern)):
            files[f"{kind}/{path.relative_to(folder).as_posix()}"] = path.read_bytes()
    return files


def tracked(root, *places):
    """The files under the places that belong to the project. What only lies there does not go into a package."""
    listed = subprocess.run(["git", "-C", str(root), "ls-files", "-z", "--", *places], check=True, capture_output=True)
    return {name: (root / name).read_bytes() for name in listed.stdout.decode("utf-8").split("\0") if name}


def with_pages(files):
    """The files, and a page for each document among them."""
    pages = Pages(files)
    made = {page_name(name): pages.page(name, files[name]) for name in files if name.endswith(".md")}
    return {**files, **made}


def in_folder(folder, files):
    return {f"{folder}/{name}": content for name, content in files.items()}


def documents(root):
    """What a user reads: the documents and the samples. Windows' editor shows lines as they are meant with either
    end, so the bytes stay."""
    return with_pages(tracked(root, "README.md", "docs", "samples"))


def notices():
    """What the binaries contain of others, with the texts of their licences."""
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "NOTICES.txt"
        subprocess.run([sys.executable, str(ROOT / "scripts/notices.py"), str(path)], check=True)
        return path.read_bytes()


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    build, dist = Path(arguments[0]), Path(arguments[1])
    version, moment = project_version(ROOT), moment_of(ROOT)
    name = f"O_Tam_id-{version}"

    files = {**documents(ROOT), "NOTICES.txt": notices()}
    for kind in MACHINES:
        files.update(built_files(build, kind, version))
    packages = {f"{name}-windows.zip": zip_bytes(in_folder(name, files), moment),
                f"{name}.spdx.json": sbom_bytes(files, version, moment)}

    dist.mkdir(parents=True, exist_ok=True)
    for package, content in packages.items():
        write_whole(dist / package, content)
    write_whole(dist / "SHA256SUMS", sums_text(packages).encode("utf-8"))
    # What an earlier version left there would look like part of this one.
    for old in dist.iterdir():
        if re.match(r"O_Tam_id-\d", old.name) and old.name not in packages:
            old.unlink()
    for package, content in packages.items():
        print(f"{dist / package}  {len(content):,} bytes")


if __name__ == "__main__":
    main(sys.argv[1:])
