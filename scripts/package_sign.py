#!/usr/bin/env python3
"""Signs Windows programs, in place, when a certificate is named.

    package_sign.py FILE...

TAM_SIGN_PFX       a PKCS #12 file with the certificate and its key
TAM_SIGN_PASSWORD  its password, "" when left out
TAM_SIGN_TIME_URL  a time-stamping service (RFC 3161); without one the signature ends with the certificate

A signed file is put in place when it is whole. Exits with 1 when a file could not be signed.
"""
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from whole_file import write_whole


def signing():
    """Whether a certificate is named."""
    return bool(os.environ.get("TAM_SIGN_PFX"))


def signed(content):
    """The bytes of a program with a signature."""
    with tempfile.TemporaryDirectory() as folder:
        bare, made, password = (Path(folder) / name for name in ("bare", "made", "password"))
        bare.write_bytes(content)
        # In a file of this user alone: a command line can be read by everybody.
        password.touch(mode=0o600)
        password.write_text(os.environ.get("TAM_SIGN_PASSWORD", ""), encoding="utf-8")
        command = ["osslsigncode", "sign", "-pkcs12", os.environ["TAM_SIGN_PFX"], "-readpass", str(password),
                   "-h", "sha256", "-n", "O_Tam_id", "-in", str(bare), "-out", str(made)]
        service = os.environ.get("TAM_SIGN_TIME_URL")
        if service:
            command[2:2] = ["-ts", service]
        run = subprocess.run(command, capture_output=True, text=True)
        if run.returncode != 0:
            sys.exit(f"osslsigncode failed:\n{run.stdout}{run.stderr}")
        return made.read_bytes()


def with_signature(content):
    """The bytes of a program as they go out: signed, when a certificate is named."""
    return signed(content) if signing() else content


def main(files):
    if not files or not signing():
        sys.exit(__doc__)
    for file in files:
        write_whole(file, signed(Path(file).read_bytes()))


if __name__ == "__main__":
    main(sys.argv[1:])
