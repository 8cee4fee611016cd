#!/usr/bin/env python3
"""Prints how many cases each test program has.

    count_cases.py [RESULTS_FOLDER]

Reads the reports that ./tam test left (build/results: a folder for each place
where programs run, a report for each program). A line a program: its cases and
the places; then the sum of the cases, and of all runs of them.

Ends with 1 when there is no report, or when a program had other numbers of cases
in two places of the same kind.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

NATIVE = "native"


def cases_of(report):
    return sum(1 for case in ElementTree.parse(report).getroot().iter("testcase") if case.get("name"))


def main(arguments):
    root = pathlib.Path(__file__).resolve().parent.parent
    results = pathlib.Path(arguments[0]) if arguments else root / "build" / "results"
    programs = {}
    for report in sorted(results.glob("*/*.xml")):
        programs.setdefault(report.stem, {})[report.parent.name] = cases_of(report)
    if not programs:
        print(f"{results}: no reports. Run ./tam test first.")
        return 1

    differ = []
    width = max(len(program) for program in programs)
    for program, places in sorted(programs.items()):
        if len({count for place, count in places.items() if place != NATIVE}) > 1:
            differ.append(program)
        print(f"{program:{width}} {max(places.values()):5}  {', '.join(sorted(places))}")
    cases = sum(max(places.values()) for places in programs.values())
    runs = sum(sum(places.values()) for places in programs.values())
    print(f"{'':{width}} {cases:5}  and {runs} runs of them")
    for program in differ:
        print(f"{program}: has other numbers of cases in two places: {programs[program]}")
    return 1 if differ else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
