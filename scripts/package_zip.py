"""Archives and sums whose bytes depend on their files alone."""

import hashlib
import io
import time
import zipfile


def zip_bytes(files, moment):
    """An archive of files, a map of names to bytes. Every file has the same time (seconds since 1970) and the same
    rights, and the names are sorted: a folder's order and clock differ from one machine to the next."""
    stamp = time.gmtime(moment)[:6]
    stamp = max(stamp, (1980, 1, 1, 0, 0, 0))  # an archive knows no earlier time
    made = io.BytesIO()
    with zipfile.ZipFile(made, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(name, stamp)
            entry.create_system = 3  # the rights below are those of Unix
            entry.external_attr = 0o100644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, files[name])
    return made.getvalue()


def sums_text(files):
    """The lines that "sha256sum --check" reads, of a map of names to bytes."""
    return "".join(f"{hashlib.sha256(files[name]).hexdigest()}  {name}\n" for name in sorted(files))
