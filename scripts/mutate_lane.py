"""One lane of a mutation run: a copy of the sources and programs, a Wine prefix, a core and a display of its own."""

import os
import re
import shutil
import signal
import subprocess
import time
from pathlib import Path

from cpp_changes import described

DLL = "bin/O_Tam_id.dll"
NATIVE = ("tests/core/core_tests", "tests/fuzz/fuzz_core_tests")
# A program that takes so much longer than it did with the unchanged component hangs.
SLOWER, AND_SECONDS = 4, 15


class Outcome:
    def __init__(self, verdict, by="", test="", seconds=0.0, passed=()):
        self.verdict, self.by, self.test, self.seconds, self.passed = verdict, by, test, seconds, dict(passed)


class LinkError(RuntimeError):
    """A program or the DLL could not be linked."""


class Stopped(Exception):
    """The run is being ended."""


def replace_file(source, target):
    """A second name for a file; a copy where there is no such thing. What stood there is not written to."""
    target.parent.mkdir(parents=True, exist_ok=True)
    target.unlink(missing_ok=True)
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)


class Lane:
    def __init__(self, number, folder, builds, core, display, prefix):
        self.number, self.folder, self.core = number, Path(folder), core
        self.windows, self.native = builds
        self.tree, self.work = self.folder / "source", self.folder / "work"
        self.win32, self.prefix, self.made_from = self.folder / "win32", self.folder / "prefix", Path(prefix)
        self.saved_registry = self.folder / "registry"
        self.child = None
        self.stopping = False
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("GTEST_", "TAM_FUZZ_", "TAM_SOAK_"))}
        self.environment.update(
            DISPLAY=display,
            WINEPREFIX=str(self.prefix),
            TAM_ROOT=self.windows_path(self.windows.root),
            UBSAN_OPTIONS="print_stacktrace=1",
        )

    def keep_to_core(self):
        """For the calling thread and what it starts."""
        os.sched_setaffinity(0, {self.core})

    @staticmethod
    def windows_path(path):
        return "Z:" + str(path).replace("/", "\\")

    def prepare(self, sources, files):
        """Copies what the lane works on; everything that an earlier run left goes."""
        self.stop_wine()
        for folder in (self.tree, self.work, self.win32):
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir(parents=True)
        for source in sources:
            target = self.tree / source
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(self.windows.root / source, target)
        for build in (self.windows, self.native):
            build.link_includes(self.tree)
        shutil.copytree(self.windows.folder / "bin", self.win32 / "bin")
        for file in files:
            replace_file(self.windows.folder / file, self.win32 / file)
        self.good_dll = self.link(self.windows, DLL, {}, self.work / "good" / "O_Tam_id.dll").read_bytes()
        self.put_dll(self.work / "good" / "O_Tam_id.dll")
        if not self.saved_registry.is_dir():
            shutil.rmtree(self.prefix, ignore_errors=True)
            shutil.copytree(self.made_from, self.prefix, symlinks=True)
            self.saved_registry.mkdir()
            for file in self.prefix.glob("*.reg"):
                shutil.copy2(file, self.saved_registry)
        self.fresh_wine()

    def stop_wine(self):
        if self.prefix.is_dir():
            subprocess.run(["wineserver", "-k"], env=self.environment, capture_output=True, check=False)

    def fresh_wine(self):
        """A server over the registry as it was made: a changed component may have left anything there."""
        self.stop_wine()
        for file in self.saved_registry.iterdir():
            shutil.copy2(file, self.prefix)
        for folder in self.prefix.glob("drive_c/users/*/Temp"):
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir()
        # A short name for the lane's programs: what the bench prints of its own path has to fit a line.
        drive = self.prefix / "dosdevices" / "t:"
        drive.unlink(missing_ok=True)
        drive.symlink_to(self.win32)
        # The server stays, so it may hold no pipe of ours.
        subprocess.run(["wineserver", "-p"], env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=False)

    def put_dll(self, file):
        replace_file(file, self.win32 / DLL)

    def run(self, command, folder, limit, output=None):
        """Runs a command; None when it took longer than the limit. Ends what it started."""
        if self.stopping:
            raise Stopped
        with open(output or os.devnull, "wb") as log:
            self.child = subprocess.Popen(command, cwd=folder, env=self.environment, stdin=subprocess.DEVNULL,
                                          stdout=log, stderr=subprocess.STDOUT, start_new_session=True)
            try:
                status = self.child.wait(limit)
            except subprocess.TimeoutExpired:
                status = None
            finally:
                self.end_child()
        if self.stopping:
            raise Stopped
        return status

    def end_child(self):
        child = self.child
        if child is not None and child.poll() is None:
            os.killpg(child.pid, signal.SIGKILL)
            child.wait()

    def compile(self, build, output, target):
        """True when the object could be compiled from the lane's sources."""
        target.parent.mkdir(parents=True, exist_ok=True)
        return self.run(build.compile_command(output, self.tree, target), build.folder, 300) == 0

    def link(self, build, output, objects, target, command=None):
        """Links a program or the DLL into the target. Raises LinkError with what the linker said."""
        target.parent.mkdir(parents=True, exist_ok=True)
        target.unlink(missing_ok=True)
        log = self.work / "link.log"
        if self.run(command or build.link_command(output, objects, target), build.folder, 300, log) != 0:
            raise LinkError(f"{output} could not be linked:\n" + log.read_text(encoding="utf-8", errors="replace"))
        return target

    def run_program(self, program, limit):
        """(status, seconds, first failing test) of a Windows test program; the status None means too slow."""
        path, log = self.win32 / program, self.work / (Path(program).stem + ".log")
        start = time.monotonic()
        status = self.run(["wine", str(path), "--gtest_fail_fast"], path.parent, limit, log)
        test = failing_test(log)
        # A skipped test shows nothing, so it counts as a failed one.
        return 1 if status == 0 and test else status, time.monotonic() - start, test

    def changed_objects(self, build, file, among, kind):
        """Compiles what reads the changed file. Returns {object: its file}; None when something does not compile."""
        objects = {}
        for output in sorted(set(build.readers.get(file, ())) & among):
            target = self.work / kind / output
            if not self.compile(build, output, target):
                return None
            objects[output] = target
        return objects

    def changed_program(self, file, program, relinked):
        """Links a test program again when it has the changed source in it, or a test of it by its name. Adds it to
        `relinked` first: the program that was there goes, whether the link succeeds or not."""
        build = self.windows
        parts = build.parts_of(program)
        # One program stands in the DLL's place and has all of the component in itself.
        holds = any(build.source_of.get(output) == "component/Classes.cpp" for output in parts)
        own = {output for output in (parts if holds else build.link_of(program))
               if build.source_of.get(output) == file}
        header = file if file.endswith(".h") else re.sub(r"\.cpp$", ".h", file)
        named = set(build.tests_of(header)) & set(build.link_of(program))
        if not own and not named:
            return
        objects = {}
        for output in own | named:
            target = self.work / "tests" / output
            if file.endswith(".h") or output in own:
                if not self.compile(build, output, target):
                    return
                objects[output] = target
        for output in build.parts_of(program) - set(build.link_of(program)):
            done = self.work / "dll" / output
            if done.is_file():
                objects[output] = done
        target = self.win32 / program
        relinked.append(program)
        self.link(build, program, objects, target, build.test_link_command(program, objects, target))

    def judge(self, change, programs, passed):
        """What becomes of one change. programs: (name, seconds, key) in order; passed: name -> key, known to pass."""
        file = self.tree / change.file
        original = file.read_bytes()
        shutil.rmtree(self.work / "dll", ignore_errors=True)
        shutil.rmtree(self.work / "native", ignore_errors=True)
        file.write_bytes(change.applied(original.decode("utf-8")).encode("utf-8"))
        relinked = []
        start = time.monotonic()
        try:
            return self._judge(change, programs, dict(passed), relinked)
        except LinkError:
            return Outcome("does not compile", "", "", time.monotonic() - start, passed)
        finally:
            file.write_bytes(original)
            self.put_dll(self.work / "good" / "O_Tam_id.dll")
            for program in relinked:
                replace_file(self.windows.folder / program, self.win32 / program)

    def _judge(self, change, programs, passed, relinked):
        start = time.monotonic()

        def outcome(verdict, by="", test=""):
            return Outcome(verdict, by, test, time.monotonic() - start, passed)

        header = change.file.endswith(".h")
        if header:
            # Dozens of the DLL's sources may read it, but few of the pure code's.
            noticed = self.run_native(change.file)
            if noticed:
                return outcome(*noticed)
        objects = self.changed_objects(self.windows, change.file, self.windows.parts_of(DLL), "dll")
        if objects is None:
            return outcome("does not compile")
        for output, target in list(objects.items()):
            if target.read_bytes() == self.good_object(output):
                del objects[output]
                target.unlink()
        if not objects:
            return outcome("same code")
        dll = self.link(self.windows, DLL, objects, self.work / "changed" / "O_Tam_id.dll")
        if dll.read_bytes() == self.good_dll:
            return outcome("same code")
        noticed = None if header else self.run_native(change.file)
        if noticed:
            return outcome(*noticed)
        self.put_dll(dll)
        for program, seconds, key in programs:
            if passed.get(Path(program).stem) == key:
                continue
            self.changed_program(change.file, program, relinked)
            status, _, test = self.run_program(program, seconds * SLOWER + AND_SECONDS)
            if status != 0:
                self.fresh_wine()
                test = test if status is not None else f"too slow: {test or 'before its first test'}"
                return outcome("noticed", Path(program).stem, test or f"ended with status {status}")
            passed[Path(program).stem] = key
        return outcome("lived")

    def good_object(self, output):
        """The same object from the unchanged source, as the build made it."""
        return (self.windows.folder / output).read_bytes()

    def run_native(self, file):
        """(verdict, program, test) when a native program over the pure code tells the change; None else."""
        for program in NATIVE:
            parts = self.native.parts_of(program)
            if program != NATIVE[0]:
                parts = {output for output in parts if not output.startswith("tests/")}
            objects = self.changed_objects(self.native, file, parts, "native")
            if objects is None:
                return ("does not compile",)
            if not objects:
                continue
            changed = self.link(self.native, program, objects, self.work / "native" / Path(program).name)
            log = self.work / f"{changed.name}.log"
            if self.run([str(changed), "--gtest_fail_fast"], changed.parent, 60, log) != 0:
                return "noticed", changed.name, failing_test(log) or "no test finished"
        return None


def failing_test(log):
    """The first failing test of a program's output; the running one when it ended in the middle."""
    running = ""
    for line in log.read_text(encoding="utf-8", errors="replace").splitlines():
        match = re.match(r"\[ +(RUN|OK|FAILED|SKIPPED) +\] ([\w/]+\.[^\s,]+)", line)
        if match and match.group(1) in ("FAILED", "SKIPPED"):
            return match.group(2)
        if match:
            running = match.group(2) if match.group(1) == "RUN" else ""
    return running


class Change:
    """One change of one file."""

    def __init__(self, number, file, site, new):
        self.number, self.file, self.site, self.new = number, file, site, new

    def applied(self, source):
        return source[: self.site.start] + self.new + source[self.site.end :]

    def __str__(self):
        return f"{self.file}:{self.site.line}  {described(self.site.old, self.new)}"
