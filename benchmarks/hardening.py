#!/usr/bin/env python3
"""Tells what the hardening costs, from the counts that script/bench-hardening makes.

Usage: hardening.py FOLDER SHIPPED PLAIN [--update-docs PAGE]

FOLDER/shipped and FOLDER/plain hold the dumps of callgrind with the one and with the other library;
SHIPPED and PLAIN are the two libraries. Prints a table; with --update-docs also writes it between
the marks of PAGE.
"""

import pathlib
import re
import statistics
import sys

from report import binary_figures, instructions, machine, replace_marked

NOTEWORTHY = 1.05


def library_counts(folder):
    counts = instructions(folder)
    return {name: count for (name, who), count in counts.items() if who == "library"}


def loading(folder):
    """Instructions of a program that does nothing but load the library."""
    text = (folder / "load.out").read_text(errors="replace")
    return int(re.search(r"^(?:summary|totals): (\d+)", text, re.M).group(1))


def row(what, plain, shipped, unit=""):
    return f"| {what} | {plain:.0f}{unit} | {shipped:.0f}{unit} | {shipped / plain - 1:+.1%} |"


def table(folder, shipped_library, plain_library):
    shipped, plain = library_counts(folder / "shipped"), library_counts(folder / "plain")
    if not plain or shipped.keys() != plain.keys():
        raise SystemExit("hardening.py: the two runs did not do the same operations")
    ratios = {name: shipped[name] / plain[name] for name in plain}
    lines = ["| | Without | As shipped | Cost |", "|---|--:|--:|--:|"]
    for name in sorted(ratios, key=ratios.get, reverse=True):
        if ratios[name] > NOTEWORTHY:
            lines.append(row(name, plain[name], shipped[name]))
    lines.append(row("loading", loading(folder / "plain"), loading(folder / "shipped")))
    sizes = [binary_figures(library)[0] / 1024 for library in (plain_library, shipped_library)]
    lines.append(row("the stripped file", *sizes, unit=" KiB"))
    few = sum(ratio <= NOTEWORTHY for ratio in ratios.values())
    lines += [
        "",
        f"Instructions per operation; {few} of {len(ratios)} operations cost at most "
        f"{NOTEWORTHY - 1:.0%} more and are not listed. Over all of them the mean (geometric) is "
        f"{statistics.geometric_mean(ratios.values()) - 1:+.1%} and the median "
        f"{statistics.median(ratios.values()) - 1:+.1%}.",
        "",
        machine(),
    ]
    return "\n".join(lines)


def main():
    folder, shipped, plain = map(pathlib.Path, sys.argv[1:4])
    content = table(folder, shipped, plain)
    print(content)
    if "--update-docs" in sys.argv:
        page = pathlib.Path(sys.argv[sys.argv.index("--update-docs") + 1])
        page.write_text(replace_marked(page.read_text(), "cost", content))


if __name__ == "__main__":
    main()
