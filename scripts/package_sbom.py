"""The bill of materials, in SPDX 2.3 as JSON: every file of the zip, which are also those that the installer brings,
and what is linked into their binaries. NOTICES.md tells of the installer's own code and of the test programs."""

import hashlib
import json
import re
import subprocess
import time
import uuid

# What is linked in statically: its package here, its licence, and the binaries that contain it.
LINKED = (
    ("GCC run-time libraries", "gcc-mingw-w64-base", "GPL-3.0-or-later WITH GCC-exception-3.1", ""),
    ("mingw-w64 run-time libraries", "mingw-w64-common", "ZPL-2.1", ""),
    ("CLI11", "libcli11-dev", "BSD-3-Clause", "tambench.exe"),
    ("nlohmann-json", "nlohmann-json3-dev", "MIT", ("tambench.exe", "tamview.exe")),
)
BINARY = re.compile(r"\.(dll|exe)$")


def package_version(package):
    """The version of an installed package of this machine."""
    return subprocess.run(["dpkg-query", "--show", "--showformat=${Version}", package], check=True,
                          capture_output=True, text=True).stdout


def identifier(kind, name):
    """Letters, digits, dots and dashes are allowed; the sum keeps two names apart that differ in others."""
    return f"SPDXRef-{kind}-{re.sub(r'[^A-Za-z0-9.]+', '-', name)}-{hashlib.sha256(name.encode()).hexdigest()[:8]}"


def sums(content):
    return [{"algorithm": name.upper(), "checksumValue": hashlib.new(name, content).hexdigest()}
            for name in ("sha1", "sha256")]


def verification_code(contents):
    """One sum over the files of a package, as SPDX defines it."""
    each = sorted(hashlib.sha1(content).hexdigest() for content in contents)
    return hashlib.sha1("".join(each).encode()).hexdigest()


def file_entry(name, content):
    kind = "BINARY" if BINARY.search(name) else "DOCUMENTATION" if name.endswith((".md", ".html", ".txt")) else "OTHER"
    return {"SPDXID": identifier("File", name), "fileName": f"./{name}", "fileTypes": [kind],
            "checksums": sums(content), "licenseConcluded": "NOASSERTION", "licenseInfoInFiles": ["NOASSERTION"],
            "copyrightText": "NOASSERTION"}


def relation(first, kind, second):
    return {"spdxElementId": first, "relationshipType": kind, "relatedSpdxElement": second}


def sbom_bytes(files, version, moment, version_of=package_version):
    """The bill of the files, a map of names to bytes. The document is named after its contents: the same files have
    the same name, others another."""
    code = verification_code(files.values())
    own = "SPDXRef-Package-O-Tam-id"
    packages = [{"SPDXID": own, "name": "O_Tam_id", "versionInfo": version, "downloadLocation": "NOASSERTION",
                 "filesAnalyzed": True, "packageVerificationCode": {"packageVerificationCodeValue": code},
                 "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
                 "licenseInfoFromFiles": ["NOASSERTION"], "copyrightText": "NOASSERTION",
                 "primaryPackagePurpose": "LIBRARY"}]
    relations = [relation("SPDXRef-DOCUMENT", "DESCRIBES", own)]
    relations += [relation(own, "CONTAINS", identifier("File", name)) for name in sorted(files)]
    for name, package, licence, where in LINKED:
        linked = identifier("Package", package)
        packages.append({"SPDXID": linked, "name": name, "versionInfo": version_of(package),
                         "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
                         "licenseConcluded": "NOASSERTION", "licenseDeclared": licence,
                         "copyrightText": "NOASSERTION", "primaryPackagePurpose": "LIBRARY",
                         "comment": f"Debian's package {package}, linked statically"})
        relations += [relation(identifier("File", file), "STATIC_LINK", linked)
                      for file in sorted(files) if BINARY.search(file) and file.endswith(where)]
    document = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
                "name": f"O_Tam_id-{version}",
                "documentNamespace": uuid.uuid5(uuid.NAMESPACE_OID, f"O_Tam_id {version} {code}").urn,
                "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(moment)),
                                 "creators": ["Tool: O_Tam_id-package"]},
                "packages": packages, "files": [file_entry(name, files[name]) for name in sorted(files)],
                "relationships": relations}
    return (json.dumps(document, indent=2, ensure_ascii=False) + "\n").encode("utf-8")
