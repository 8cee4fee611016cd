"""The test programs as they run on a Windows that has nothing else of the project, and run-tests.cmd."""

from package_programs import BESIDE, DLLS, MACHINES, PROGRAMS, read_program, stripped, tracked
from package_sign import with_signature

# What the tests read, as it lies in the sources.
READ = ("samples", "docs/api", "docs/json", "docs/rules.md", "idl", "schemas", "tests/fuzz/corpus")
# Programs that the tests start, beside those of users: the folder and the name.
HOSTS = ("host.exe", "doc_sample.exe")
STARTED = ("tests/internal/end_before_init.exe",)
# What the build puts beside test programs: a DLL, a library of definitions, the samples of the documents.
NEAR_TESTS = ("tests/host/channels/*.xml", "tests/host/device.xml", "tests/docs/samples/*")


def listed_places(text):
    """Where each program of scripts/test-list runs, by its name."""
    lines = [line.split() for line in text.splitlines() if line.strip() and not line.startswith("#")]
    return {line[0]: line[1].split(",") for line in lines}


def is_for(kind, name, places):
    """A program without a line runs in 32 bits; 64 bits are named by the list alone."""
    if kind == "win32":
        return not places.get(name) or any(place in ("point", "comma", "screen") for place in places[name])
    return any(place.endswith("64") for place in places.get(name, ()))


def programs_of(build, kind, places):
    """The paths of a kind's test programs from its folder, in the order in which they run."""
    folder = build / kind
    found = sorted(folder.glob("tests/**/*_tests.exe"), key=lambda path: (path.name, path))
    return [path.relative_to(folder).as_posix() for path in found if is_for(kind, path.stem, places)]


def command_file(template, programs):
    """run-tests.cmd: the template with a line for each (kind, path from the kind's folder). A line ends as Windows
    ends lines, or labels are not found."""
    calls = []
    for kind, path in programs:
        folder, _, name = path.removeprefix("tests/").rpartition("/")
        folder = folder.replace("/", "\\")
        calls.append(f"call :run {kind} {folder} {name.removesuffix('.exe')}")
    return template.replace("rem @PROGRAMS@", "\n".join(calls)).replace("\n", "\r\n").encode("ascii")


def kit_files(root, build):
    """Names and bytes."""
    places = listed_places((root / "scripts/test-list").read_text(encoding="utf-8"))
    files = tracked(root, *READ)
    programs = []
    for kind in MACHINES:
        folder = build / kind
        own = programs_of(build, kind, places)
        programs += [(kind, path) for path in own]
        paths = own + [path for path in STARTED if path.replace("end_before_init", "internal_tests") in own]
        paths += [f"bin/{name}" for name in (*DLLS, *PROGRAMS)]
        paths += [f"bin/{name}" for name in HOSTS if "tests/docs/docs_tests.exe" in own]
        paths += ["tests/host/OrvHost.dll"] if "tests/host/host_tests.exe" in own else []
        for path in paths:
            content = read_program(folder / path, kind)
            files[f"{kind}/{path}"] = with_signature(stripped(content, kind) if path.endswith(".exe") else content)
        near = [f"bin/{pattern}" for pattern in BESIDE] + [pattern for pattern in NEAR_TESTS if kind == "win32"]
        for pattern in near:
            for path in sorted(folder.glob(pattern)):
                files[f"{kind}/{path.relative_to(folder).as_posix()}"] = path.read_bytes()
    template = (root / "packaging/run-tests.cmd.in").read_text(encoding="ascii")
    files["run-tests.cmd"] = command_file(template, programs)
    files["README.md"] = (root / "packaging/windows-tests.md").read_bytes()
    return files
