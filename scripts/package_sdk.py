"""What a host's programmer gets: interfaces, manifests, examples and clients, as the folder of the SDK."""

import re

from package_programs import MACHINES, tracked, with_names

HEADERS = ("O_Tam_id.h", "OrvDBFaces.h", "OrvHost.h")
LIBRARIES = ("O_Tam_id.tlb", "OrvDBFaces.tlb", "OrvHost.tlb")
MANIFESTS = ("O_Tam_id.Classes.manifest", "OrvHost.Classes.manifest")
# The IDL compiler writes where its source lay, in a folder whose name may have blanks.
MADE_FROM = re.compile(rb"(?<= from ).*/(\w+\.idl)")
# In the sources these documents lie beside sdk/; here what is in sdk/ is at the top.
FROM_SDK = re.compile(rb"\]\(\.\./sdk/")


def without_folder(header):
    """A header that the IDL compiler made, the same whichever folder it was made in."""
    return MADE_FROM.sub(rb"\1", header, count=1)


def sdk_files(root, build):
    """Names and bytes. The headers are the same for both kinds; a type library and a manifest are for one."""
    files = with_names(tracked(root, "sdk/example", "sdk/README.md", "sdk/registration-free.md"), "^sdk/", "")
    for name in HEADERS:
        each = {(build / kind / "idl" / name).read_bytes() for kind in MACHINES}
        assert len(each) == 1, f"{name} differs between {' and '.join(MACHINES)}"
        files[f"include/{name}"] = without_folder(each.pop())
    for kind in MACHINES:
        files.update({f"typelib/{kind}/{name}": (build / kind / "idl" / name).read_bytes() for name in LIBRARIES})
        files.update({f"manifests/{kind}/{name}": (build / kind / "bin" / name).read_bytes() for name in MANIFESTS})
    files.update({name: content for name, content in tracked(root, "idl").items() if name.endswith(".idl")})
    for path in sorted((build / "win32/idl/members").glob("*.idl")):
        files[f"idl/members/{path.name}"] = path.read_bytes()
    files.update(tracked(root, "docs/host-guide.md", "docs/formats.md", "docs/formats-image.md", "docs/api", "schemas",
                         "samples/clients", "samples/streams", "samples/catalogue.xml"))
    files.update(tracked(root, "cmake/mingw.cmake", "cmake/mingw-w32.cmake", "cmake/mingw-w64.cmake"))
    return {name: FROM_SDK.sub(b"](../", content) if name.startswith("docs/") else content
            for name, content in files.items()}
