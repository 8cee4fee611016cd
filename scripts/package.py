#!/usr/bin/env python3
"""Writes what a Windows user gets into a folder, out of the Windows builds.

    package.py BUILD DIST

BUILD holds the builds win32 and win64. DIST gets the packages, a bill of materials and SHA256SUMS. The same commit
gives the same bytes wherever it is packed: times come from SOURCE_DATE_EPOCH, or from the commit. With TAM_SIGN_PFX
(package_sign.py) every binary is signed, and the bytes depend on the time.
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from check_version import project_version
from package_installer import installer_bytes
from package_kit import kit_files
from package_pages import Pages, page_name
from package_programs import MACHINES, built_files, tracked
from package_sbom import sbom_bytes
from package_sdk import sdk_files
from package_sign import signing
from package_zip import sums_text, zip_bytes
from whole_file import write_whole

ROOT = Path(__file__).resolve().parent.parent


def moment_of(root):
    """The time of everything in the packages, in seconds since 1970."""
    given = os.environ.get("SOURCE_DATE_EPOCH")
    if given is None:
        given = subprocess.run(["git", "-C", str(root), "log", "-1", "--format=%ct"], check=True, capture_output=True,
                               text=True).stdout
    return int(given)


def with_pages(files):
    """The files, and a page for each document among them."""
    pages = Pages(files)
    made = {page_name(name): pages.page(name) for name in files if name.endswith(".md")}
    return {**files, **made}


def in_folder(folder, files):
    return {f"{folder}/{name}": content for name, content in files.items()}


def documents(root):
    """What a user reads: the documents and the samples. Windows' editor shows lines as they are meant with either
    end, so the bytes stay."""
    return with_pages(tracked(root, "README.md", "NOTICES.md", "docs", "samples", "schemas"))


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

    texts = {"NOTICES.txt": notices()}
    files = {**documents(ROOT), **texts}
    for kind in MACHINES:
        files.update(built_files(build, kind, version))
    sign = f"python3 '{ROOT / 'scripts/package_sign.py'}'" if signing() else None
    sdk = with_pages(sdk_files(ROOT, build))
    kit = with_pages({**kit_files(ROOT, build), **texts})
    packages = {f"{name}-windows.zip": zip_bytes(in_folder(name, files), moment),
                f"{name}-sdk.zip": zip_bytes(in_folder(f"{name}-sdk", sdk), moment),
                f"{name}-windows-tests.zip": zip_bytes(in_folder(f"{name}-windows-tests", kit), moment),
                f"{name}-setup.exe": installer_bytes(files, version, moment, sign),
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
