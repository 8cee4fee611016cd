#!/usr/bin/env python3
"""Counts one test program's results.

    count_results.py XML LOG STATUS [REASON]

XML is the program's GoogleTest report, LOG its output and STATUS its exit status.
REASON says why the program was stopped from outside, if it was.

Prints "PASSED FAILED" and then the name of each failure on a line of its own.
A skipped or disabled test counts as a failure, because it proves nothing. So does
a program that ran no test, ended without a report, or reported success and then
failed.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree


def from_report(path):
    """(passed, failures) of a report; None when there is no whole one."""
    try:
        root = ElementTree.parse(path).getroot()
    except (OSError, ElementTree.ParseError):
        return None
    passed, failures = 0, []
    for case in root.iter("testcase"):
        # GoogleTest reports a failure of the global set-up as a case without a name.
        name = f"{case.get('classname')}.{case.get('name')}" if case.get("name") else "(outside any test)"
        if case.find("failure") is not None:
            failures.append(name)
        elif case.get("status") != "run":
            failures.append(f"{name} (disabled)")
        elif case.find("skipped") is not None or case.get("result") == "skipped":
            failures.append(f"{name} (skipped)")
        else:
            passed += 1
    return passed, failures


def from_log(path):
    """(passed, failures, running) as far as a program got that wrote no report."""
    passed, failures, running = 0, [], None
    try:
        with open(path, encoding="utf-8", errors="replace") as log:
            for line in log:
                match = re.match(r"\[ +(RUN|OK|FAILED|SKIPPED) +\] (\w+\.\S+?)(,| \(|\s*$)", line)
                if not match:
                    continue
                word, name = match.group(1), match.group(2)
                running = name if word == "RUN" else None
                if word == "OK":
                    passed += 1
                elif word != "RUN":
                    failures.append(name)
    except OSError:
        pass
    return passed, failures, running


def main(arguments):
    report, log, status = arguments[0], arguments[1], int(arguments[2])
    reason = arguments[3] if len(arguments) > 3 else f"ended with status {status}"
    counted = from_report(report)
    if counted is None:
        passed, failures, running = from_log(log)
        where = f"in {running}" if running else "outside any test"
        failures.append(f"({reason} {where}, no report)")
    else:
        passed, failures = counted
        if not passed and not failures:
            failures.append("(ran no test)")
        elif status != 0 and not failures:
            failures.append(f"({reason} after its tests)")
    print(passed, len(failures))
    for name in failures:
        print(name)


if __name__ == "__main__":
    main(sys.argv[1:])
