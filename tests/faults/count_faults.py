#!/usr/bin/env python3
"""Sums up GoogleTest's JSON reports, and fails where nothing was counted.

Usage: count_faults.py --property NAME REPORT...
       count_faults.py [--may-skip TEST] REPORT...
    --property NAME    sums up this property of the tests, by suite, or by test for a suite of rows
    --may-skip TEST    that this test was skipped is no failure; that of another is
"""

import collections
import json
import sys


def suites(reports):
    for report in reports:
        with open(report, encoding="utf-8") as file:
            yield from json.load(file)["testsuites"]


def print_table(counts, unit):
    width = max(map(len, counts), default=0)
    for name, count in sorted(counts.items()):
        print(f"  {name:<{width}} {count:>6}")
    print(f"  {'in all':<{width}} {sum(counts.values()):>6} {unit}")
    return sum(counts.values())


def count_property(name, reports):
    counts = collections.Counter()
    for suite in suites(reports):
        for test in suite["testsuite"]:
            if name in test:
                test_of_row, is_row, _ = test["name"].partition("/")
                counts[f"{suite['name']} {test_of_row}" if is_row else suite["name"]] += int(
                    test[name])
    return print_table(counts, "faults") > 0


def count_tests(reports, may_skip):
    counts = collections.Counter()
    failed = False
    for suite in suites(reports):
        for test in suite["testsuite"]:
            if test["result"] == "COMPLETED":
                counts[suite["name"]] += 1
            elif test["result"] == "SKIPPED":
                name = f"{suite['name']}.{test['name']}"
                failed = failed or name != may_skip
                print(f"  skipped: {name}")
    return print_table(counts, "conditions") > 0 and not failed


def main(arguments):
    if arguments[:1] == ["--property"]:
        passed = count_property(arguments[1], arguments[2:])
    else:
        may_skip = arguments[1] if arguments[:1] == ["--may-skip"] else None
        passed = count_tests(arguments[2:] if may_skip else arguments, may_skip)
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
