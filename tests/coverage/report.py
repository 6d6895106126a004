#!/usr/bin/env python3
"""Reports the lines, branches and MC/DC conditions that the tests leave out, from llvm-cov's export.

Usage: report.py PROJECT EXPORT FOLDER...

PROJECT is the folder that the names are shown relative to, EXPORT what `llvm-cov export` wrote,
and FOLDER each folder below PROJECT whose code counts. Exits with 1 when anything is left out.

Code that is compiled more than once, as inline functions, templates and macros are, counts as
one: its counts are added up, so that a line, an outcome of a branch or a condition of a decision
is covered where any instantiation covers it. Conditions that are constant have no outcome to
cover; llvm-cov leaves them out of its export.

A line may be left out on purpose by `// Uncovered: REASON` at its end. At most five may be, and a
line that is covered after all must not say so.
"""

import collections
import json
import pathlib
import re
import sys

MARK = re.compile(r"//\s*Uncovered:\s*(.*)$")
MOST_EXCLUDED = 5

Branch = collections.namedtuple("Branch", "line column end_line end_column")


class File:
    """What is known of one source file: by line, by branch and by decision."""

    def __init__(self, text):
        self.lines = {}
        self.branches = collections.defaultdict(lambda: [0, 0])
        self.decisions = {}
        self.excluded = {}
        for number, line in enumerate(text.splitlines(), 1):
            mark = MARK.search(line)
            if mark:
                self.excluded[number] = mark.group(1).strip()


def line_counts(segments):
    """The count of each line with code, as `llvm-cov show` finds it from the segments."""
    counts = {}
    by_line = collections.defaultdict(list)
    for segment in segments:
        by_line[segment[0]].append(segment)
    wrapped = None
    for line in range(min(by_line), max(by_line) + 1) if by_line else ():
        here = by_line.get(line, [])
        starts = [each for each in here if each[3] and each[4] and not each[5]]
        skipped = bool(here) and not here[0][3] and here[0][4]
        mapped = not skipped and (bool(wrapped and wrapped[3]) or bool(starts))
        if mapped or any(each[3] and each[4] for each in here):
            values = [each[2] for each in starts]
            counts[line] = max([wrapped[2] if wrapped else 0] + values)
        if here:
            wrapped = here[-1]
    return counts


def read(export, project, folders):
    files = {}
    data = json.loads(export.read_text())["data"][0]
    for each in data["files"]:
        path = pathlib.Path(each["filename"])
        if any(folder in path.parents for folder in folders):
            file = files[path] = File(path.read_text())
            file.lines = line_counts(each["segments"])
    for function in data["functions"]:
        names = [pathlib.Path(name) for name in function["filenames"]]
        for each in function.get("branches", ()):
            file = files.get(names[each[6]])
            if file is not None:
                branch = Branch(*each[:4])
                file.branches[branch][0] += each[4]
                file.branches[branch][1] += each[5]
        for each in function.get("mcdc_records", ()):
            file = files.get(names[each[4]])
            if file is not None:
                shown = file.decisions.setdefault(Branch(*each[:4]), [False] * len(each[-1]))
                for number, covered in enumerate(each[-1]):
                    shown[number] = shown[number] or covered
    return {path.relative_to(project): file for path, file in sorted(files.items())}


def gaps_of(path, file):
    """Every gap of a file as (line, text), those of excluded lines among them."""
    for line, count in file.lines.items():
        if count == 0:
            yield line, f"{path}:{line}: never run"
    for branch, outcomes in file.branches.items():
        for count, outcome in zip(outcomes, ("true", "false")):
            if count == 0:
                yield branch.line, f"{path}:{branch.line}:{branch.column}: never {outcome}"
    for decision, conditions in file.decisions.items():
        for number, shown in enumerate(conditions, 1):
            if not shown:
                place = f"{path}:{decision.line}:{decision.column}"
                yield decision.line, f"{place}: condition {number} never decides alone (MC/DC)"


def totals(file):
    """Covered and all: lines, outcomes of branches, conditions of decisions."""
    kept = [line for line in file.lines if line not in file.excluded]
    outcomes = [
        count
        for branch, counts in file.branches.items()
        if branch.line not in file.excluded
        for count in counts
    ]
    conditions = [
        shown
        for decision, all_shown in file.decisions.items()
        if decision.line not in file.excluded
        for shown in all_shown
    ]
    return [
        (sum(1 for line in kept if file.lines[line]), len(kept)),
        (sum(1 for count in outcomes if count), len(outcomes)),
        (sum(conditions), len(conditions)),
    ]


def row(name, figures):
    cells = [f"{covered}/{every}" if every else "-" for covered, every in figures]
    print(f"{name:<52}" + "".join(f"{cell:>13}" for cell in cells))


def has_code(source):
    """Whether a source file, or a header with inline functions, has anything to be run."""
    text = re.sub(r"//.*", "", source.read_text())
    if source.suffix == ".cpp":
        return "{" in text
    return source.suffix == ".h" and re.search(r"\breturn\b|\bDoBuild\(", text) is not None


def check_exclusions(files):
    """Complaints about the marks, and the marks themselves."""
    complaints, marks = [], []
    for path, file in files.items():
        gap_lines = {line for line, _ in gaps_of(path, file)}
        for line, reason in file.excluded.items():
            marks.append(f"{path}:{line}: excluded: {reason}")
            if not reason:
                complaints.append(f"{path}:{line}: excluded without a reason")
            if line not in gap_lines:
                complaints.append(f"{path}:{line}: excluded, but covered")
    if len(marks) > MOST_EXCLUDED:
        complaints.append(f"{len(marks)} lines are excluded, more than {MOST_EXCLUDED}")
    return complaints, marks


def main():
    project = pathlib.Path(sys.argv[1])
    folders = [project / folder for folder in sys.argv[3:]]
    files = read(pathlib.Path(sys.argv[2]), project, folders)

    print(f"{'':<52}{'lines':>13}{'branches':>13}{'MC/DC':>13}")
    figures = {path: totals(file) for path, file in files.items()}
    for path, each in figures.items():
        row(str(path), each)
    total = [tuple(map(sum, zip(*kind))) for kind in zip(*figures.values())]
    row(f"{len(files)} files", total)

    complaints, marks = check_exclusions(files)
    print(f"{len(marks)} lines are excluded.")
    for mark in marks:
        print(mark)
    for source in sorted(each for folder in folders for each in folder.rglob("*.*")):
        name = source.relative_to(project)
        if name not in files and has_code(source):
            complaints.append(f"{name}: not part of the measurement")
    for path, file in files.items():
        complaints += [text for line, text in gaps_of(path, file) if line not in file.excluded]
    print("\n".join(complaints) if complaints else "Nothing is left out.")
    sys.exit(1 if complaints or not files else 0)


main()
