#!/usr/bin/env python3
"""Sums up GoogleTest's JSON reports by suite, and fails where nothing was counted.

Usage: count_faults.py [--property NAME] REPORT...
    --property NAME    sums up this property of the tests; without, counts tests and those skipped
"""

import collections
import json
import sys


def suites(reports):
    for report in reports:
        with open(report, encoding="utf-8") as file:
            yield from json.load(file)["testsuites"]


def print_table(counts, unit):
    for name, count in sorted(counts.items()):
        print(f"  {name:<44} {count:>6}")
    print(f"  {'in all':<44} {sum(counts.values()):>6} {unit}")
    return sum(counts.values())


def count_property(name, reports):
    counts = collections.Counter()
    for suite in suites(reports):
        for test in suite["testsuite"]:
            if name in test:
                counts[suite["name"]] += int(test[name])
    return print_table(counts, "faults")


def count_tests(reports):
    counts = collections.Counter()
    for suite in suites(reports):
        for test in suite["testsuite"]:
            if test["result"] == "COMPLETED":
                counts[suite["name"]] += 1
            elif test["result"] == "SKIPPED":
                print(f"  skipped: {suite['name']}.{test['name']}")
    return print_table(counts, "conditions")


def main(arguments):
    if arguments[:1] == ["--property"]:
        return count_property(arguments[1], arguments[2:]) == 0
    return count_tests(arguments) == 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
