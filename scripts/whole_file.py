"""Files that are there whole or not at all."""

import os
import sys
from pathlib import Path


def write_whole(path, content):
    """Writes the bytes beside the file and puts them in place when all of them are on the disk. A failure leaves the
    old file as it was and ends the script."""
    path = Path(path)
    part = path.with_name(path.name + ".part")
    try:
        with part.open("wb") as file:
            file.write(content)
            file.flush()
            os.fsync(file.fileno())
        os.replace(part, path)
    except OSError as error:
        try:
            part.unlink(missing_ok=True)
        except OSError:
            pass  # the folder itself cannot be written: there is nothing to take away
        sys.exit(f"{path} cannot be written: {error.strerror}")
