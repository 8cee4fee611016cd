#!/usr/bin/env python3
"""Changes one token of the component's sources, again and again, and asks the test programs whether they notice.

    mutate.py --root ROOT --build FOLDER --prefix FOLDER --cores N... --displays D... [--quick] COUNT SEED

Called by "./tam mutate", which has built everything and started the displays.
Works in copies under build/mutate. What is known is written to the journal
there, change by change: the same command goes on where the last one was cut,
and asks only new or changed programs about the changes that lived.

The last line is "N noticed, N lived of N". The exit status is 0 when all
changes were tried, whatever lived; 1 when that could not be done, or when a
program fails with the unchanged component and so could not be asked.
"""

import argparse
import hashlib
import json
import os
import random
import signal
import sys
import threading
from pathlib import Path

import mutate_test
from cpp_changes import described, sites_of
from mutate_build import Build
from mutate_lane import DLL, Change, Lane, Stopped

FOLDERS = ("core", "appobject", "points", "types", "dialogs", "internal", "common", "com", "component")
# The tests of these folders stand under another name.
TESTED_IN = {"component": "package"}
COUNTED = ("noticed", "lived")
QUICK_SECONDS = 30


def digest(*files):
    state = hashlib.sha256()
    for file in files:
        state.update(Path(file).read_bytes())
    return state.hexdigest()[:16]


def component_sources(root):
    return sorted(str(file.relative_to(root)) for folder in FOLDERS for pattern in ("*.cpp", "*.h")
                  for file in (root / folder).glob(pattern))


def drawn_changes(root, files, seed):
    """Every possible change once, in the order that the seed gives."""
    places = [(file, site) for file in files for site in sites_of((root / file).read_text(encoding="utf-8"))]
    chance = random.Random(seed)
    chance.shuffle(places)
    return [Change(number, file, site, chance.choice(site.choices)) for number, (file, site) in enumerate(places, 1)]


def listed_places(root):
    """Which places scripts/test-list gives each program."""
    lines = (root / "scripts/test-list").read_text(encoding="utf-8").splitlines()
    return {line.split()[0]: line.split()[1].split(",") for line in lines if line.strip() and line[0] != "#"}


class Journal:
    """What is known of each change; later lines replace earlier ones."""

    def __init__(self, path, stamp, seed):
        self.path, self.head = path, {"stamp": stamp, "seed": seed}
        self.entries = {}
        if path.is_file():
            for line in path.read_text(encoding="utf-8").splitlines():
                try:
                    entry = json.loads(line)
                except ValueError:
                    continue  # the run was cut while it wrote this line
                if all(entry.get(name) == value for name, value in self.head.items()):
                    self.entries[entry["number"]] = entry

    def add(self, change, outcome):
        entry = dict(self.head, number=change.number, file=change.file, line=change.site.line,
                     change=described(change.site.old, change.new), verdict=outcome.verdict, by=outcome.by,
                     test=outcome.test, seconds=round(outcome.seconds, 1), passed=outcome.passed)
        self.entries[change.number] = entry
        with open(self.path, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")


class Run:
    def __init__(self, options):
        self.root, self.build = Path(options.root), Path(options.build)
        self.folder = self.build / "mutate"
        self.folder.mkdir(parents=True, exist_ok=True)
        self.windows = Build(self.root, self.build / "win32")
        self.native = Build(self.root, self.build / "native")
        self.count, self.quick = options.count, options.quick
        sources = component_sources(self.root)
        stamp = digest(*(self.root / source for source in sources))
        self.changes = drawn_changes(self.root, sources, options.seed)
        self.journal = Journal(self.folder / "journal.jsonl", stamp, options.seed)
        self.lanes = [
            Lane(number, self.folder / f"lane-{number}", (self.windows, self.native), core, display, options.prefix)
            for number, (core, display) in enumerate(zip(options.cores, options.displays))
        ]
        self.programs, self.left_out = [], []
        self.lock = threading.Lock()
        self.next = 0
        self.failure = None

    def in_lanes(self, work):
        """Runs work(lane) in a thread for each lane; raises what went wrong in one of them."""

        def guarded(lane):
            try:
                lane.keep_to_core()
                work(lane)
            except Stopped:
                pass
            except Exception as error:  # one lane's trouble ends the others
                self.failure = self.failure or error
                self.stop()

        threads = [threading.Thread(target=guarded, args=(lane,)) for lane in self.lanes]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if self.failure:
            raise self.failure

    def stop(self):
        for lane in self.lanes:
            lane.stopping = True
            lane.end_child()

    def prepare(self):
        # Beside the programs lies what they load.
        built = sorted(str(path.relative_to(self.windows.folder))
                       for path in (self.windows.folder / "tests").rglob("*")
                       if path.is_file() and path.suffix not in (".a", ".cmake") and "CMakeFiles" not in path.parts)
        copied = sorted(str(path.relative_to(self.root)) for pattern in ("*.cpp", "*.h")
                        for path in self.root.rglob(pattern) if not path.is_relative_to(self.build)
                        and path.relative_to(self.root).parts[0] not in ("build", ".git"))
        self.in_lanes(lambda lane: lane.prepare(copied, built))
        places = listed_places(self.root)
        tests = [each for each in built
                 if each.endswith("_tests.exe") and {"point", "screen"} & set(places.get(Path(each).stem, ["point"]))]
        self.measure(tests)

    def measure(self, tests):
        """Runs each program with the unchanged component: it must pass, and its time is its limit's measure. A
        program that passes without the component, too, cannot notice anything and is left out."""
        path = self.folder / "programs.json"
        known = json.loads(path.read_text(encoding="utf-8")) if path.is_file() else {}
        beside = [self.windows.folder / "bin" / name for name in ("OrvHost.dll", "tambench.exe")]
        dll = digest(self.windows.folder / DLL)
        waiting = list(tests)

        def work(lane):
            while True:
                with self.lock:
                    if not waiting:
                        return
                    program = waiting.pop(0)
                name, key = Path(program).stem, digest(self.windows.folder / program, *beside)
                entry = known.get(name, {})
                if entry.get("key") != key or (entry["needed"] and entry["dll"] != dll):
                    entry = self.measured(lane, program, key, dll)
                with self.lock:
                    if entry is not None:
                        known[name] = entry
                        if entry["needed"] and not (self.quick and entry["seconds"] > QUICK_SECONDS):
                            self.programs.append((program, entry["seconds"], key))
                    path.with_suffix(".new").write_text(json.dumps(known, indent=1), encoding="utf-8")
                    path.with_suffix(".new").replace(path)

        self.in_lanes(work)
        if not self.programs and not self.lanes[0].stopping:
            raise RuntimeError("no test program reads the component")

    def measured(self, lane, program, key, dll):
        """What is known of a program after a run; None when it is left out."""
        (lane.win32 / DLL).unlink()
        status, seconds, _ = lane.run_program(program, 600)
        lane.put_dll(lane.work / "good" / "O_Tam_id.dll")
        needed = status != 0
        if needed:
            status, seconds, test = lane.run_program(program, QUICK_SECONDS if self.quick else 900)
            if status is None and self.quick:
                print(f"{Path(program).stem} takes more than {QUICK_SECONDS} s and is left out", flush=True)
                lane.fresh_wine()
                return None
            if status != 0:
                with self.lock:
                    self.left_out.append(f"{Path(program).stem} fails with the unchanged component: {test or status}")
                print(self.left_out[-1], flush=True)
                lane.fresh_wine()
                return None
            print(f"{Path(program).stem} passes with the unchanged component in {seconds:.1f} s", flush=True)
        return {"key": key, "dll": dll, "needed": needed, "seconds": round(seconds, 1)}

    def programs_for(self, file):
        """The programs of the changed file's own folder first, then the quick ones."""
        folder = file.split("/")[0]
        own = f"tests/{TESTED_IN.get(folder, folder)}/"
        return sorted(self.programs, key=lambda each: (not each[0].startswith(own), each[1]))

    def known(self, change):
        """True when the journal tells all of a change; of one that lived, the answer of every program as it is now."""
        entry = self.journal.entries.get(change.number)
        if entry is None or entry["verdict"] != "lived":
            return entry is not None
        return all(entry["passed"].get(Path(program).stem) == key for program, _, key in self.programs)

    def counted(self):
        """The changes that were tried so far and count, in their order, up to the wanted number."""
        tried = [entry for _, entry in sorted(self.journal.entries.items()) if entry["verdict"] in COUNTED]
        return tried[: self.count]

    def take(self):
        """The next change to try, or None when there are enough."""
        with self.lock:
            while self.next < len(self.changes):
                known = [self.journal.entries.get(each.number, {}).get("verdict") in COUNTED
                         for each in self.changes[: self.next]]
                if sum(known) >= self.count:
                    return None
                change = self.changes[self.next]
                self.next += 1
                if not self.known(change):
                    return change
        return None

    def try_changes(self, lane):
        while True:
            change = self.take()
            if change is None:
                return
            earlier = self.journal.entries.get(change.number, {})
            outcome = lane.judge(change, self.programs_for(change.file), earlier.get("passed", {}))
            with self.lock:
                self.journal.add(change, outcome)
                by = f" by {outcome.by}, {outcome.test}" if outcome.by else ""
                print(f"{len(self.counted()):4}/{self.count}  {change}  {outcome.verdict}{by}  "
                      f"{outcome.seconds:.1f} s", flush=True)

    def report(self):
        """The table in the order of the changes, and the count on the last line."""
        counted = self.counted()
        last = counted[-1]["number"] if counted else 0
        entries = [entry for number, entry in sorted(self.journal.entries.items()) if number <= last]
        print()
        for entry in entries:
            by = f" by {entry['by']}: {entry['test']}" if entry["by"] else ""
            print(f"{entry['file']}:{entry['line']}  {entry['change']}  {entry['verdict']}{by}")
        lived = [entry for entry in counted if entry["verdict"] == "lived"]
        if lived:
            print("\nLived:")
        for entry in lived:
            print(f"  {entry['file']}:{entry['line']}  {entry['change']}")
        for verdict in ("does not compile", "same code"):
            print(f"{sum(entry['verdict'] == verdict for entry in entries)} not counted: {verdict}")
        for line in self.left_out:
            print(f"Left out: {line}")
        print(f"\n{len(counted) - len(lived)} noticed, {len(lived)} lived of {len(counted)}")
        return len(counted) == self.count and not self.left_out

    def end(self):
        for lane in self.lanes:
            lane.stop_wine()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", required=True)
    parser.add_argument("--build", required=True)
    parser.add_argument("--prefix", required=True)
    parser.add_argument("--cores", nargs="+", type=int, required=True)
    parser.add_argument("--displays", nargs="+", required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("count", type=int)
    parser.add_argument("seed", type=int)
    options = parser.parse_args()
    if not mutate_test.passes():
        return 1
    run = Run(options)

    def ended(number, _):
        run.stop()
        run.failure = run.failure or RuntimeError("ended from outside; the same command goes on from here")

    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, ended)
    print(f"{options.count} changes, seed {options.seed}, out of {len(run.changes)}", flush=True)
    try:
        run.prepare()
        run.in_lanes(run.try_changes)
        return 0 if run.report() else 1
    except RuntimeError as error:
        print(f"mutate: {error}", file=sys.stderr)
        return 1
    finally:
        run.end()


if __name__ == "__main__":
    os.umask(0o022)
    sys.exit(main())
