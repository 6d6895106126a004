#!/usr/bin/env python3
"""Makes the tables and the plot of docs/performance.md from the files of a run.

Usage: report.py FOLDER LIBRARY FLOOR [--update-docs DOCS]
       report.py FOLDER LIBRARY FLOOR --check
       report.py FOLDER --close | --wide

FOLDER holds times-1.json and so on, one for each process, allocations.json, growth.json and the
dumps of callgrind (callgrind.out.*); LIBRARY and FLOOR are the two shared libraries. Prints the
tables; with --update-docs also writes them between the marks of DOCS/performance.md, and the plot
to DOCS/performance.svg.

With --check prints only the verdict on what is the same in every run, and fails unless all of it
holds.

With --close prints, as a regular expression, the operations whose time is above its target or close
to it, with --wide those whose times lie far apart: they need more processes to be told from luck.
"""

import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import typing


def load(path):
    return json.loads(path.read_text()) if path.exists() else []


def load_times(folder):
    """The times of each operation and contender, of all processes together."""
    merged = {}
    for part in sorted(folder.glob("times-*.json")):
        for each in load(part):
            operation = merged.setdefault(each["operation"], {**each, "times": {}})
            for who, times in each["times"].items():
                operation["times"].setdefault(who, []).extend(times["sorted"])
    for operation in merged.values():
        operation["times"] = {who: summary(each) for who, each in operation["times"].items()}
    return list(merged.values())


def summary(times):
    """The median, and the distance of the quartiles as a part of it."""
    first, median, third = statistics.quantiles(times, n=4, method="inclusive")
    return {"median": median, "spread": (third - first) / median, "sorted": sorted(times)}


def instructions(folder):
    """Instructions per operation and contender, from the dumps of callgrind."""
    counts = {}
    for dump in folder.glob("callgrind.out.*"):
        text = dump.read_text(errors="replace")
        name = re.search(r"^desc: Trigger: Client Request: (.*)\|(\w+)\|(\d+)$", text, re.M)
        if name:
            total = int(re.search(r"^summary: (\d+)", text, re.M).group(1))
            counts[name.group(1), name.group(2)] = total / int(name.group(3))
    return counts


TIME_TARGET = 1.05  # of the floor's median
CLOSE = 0.02  # what luck is worth after a few processes
WIDE = 0.15  # distance of the quartiles, as a part of the median


def time_ratio(operation):
    return operation["times"]["library"]["median"] / operation["times"]["floor"]["median"]


def pattern(times, is_chosen):
    """A regular expression for the operations chosen; empty where there is none."""
    chosen = [each["operation"] for each in times if is_chosen(each)]
    return "|".join("^" + re.sub(r"([][\\^$.|?*+(){}])", r"\\\1", name) + "$" for name in chosen)


def is_close(operation):
    return time_ratio(operation) > TIME_TARGET - CLOSE


def is_wide(operation):
    spreads = (operation["times"][who]["spread"] for who in ("library", "floor"))
    return max(spreads) > WIDE


def nanoseconds(value):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value:.3g} ns"


def best_peer(times):
    peers = {name: each for name, each in times.items() if name not in ("library", "floor")}
    return min(peers.items(), key=lambda peer: peer[1]["median"], default=None)


def ratio(value, floor):
    return f"{value / floor:.2f}" if floor else "–"


def times_table(times, counts, allocations):
    blocks = {each["operation"]: each for each in allocations}
    lines = []
    area = None
    for each in times:
        name, contenders = each["operation"], each["times"]
        if each["area"] != area:
            area = each["area"]
            lines += [
                "",
                f"### {area}",
                "",
                "| Operation | Library | ± | Floor | Time | Instructions | Blocks | Best peer |",
                "|---|--:|--:|--:|--:|--:|--:|--:|",
            ]
        library, floor = contenders["library"], contenders["floor"]
        peer = best_peer(contenders)
        executed = counts.get((name, "library"))
        counted = (
            f"{executed:.0f} ({ratio(executed, counts[name, 'floor'])})" if executed else "–"
        )
        taken = (
            f"{blocks[name]['library']} of {blocks[name]['required']}" if name in blocks else "–"
        )
        lines.append(
            f"| {name} | {nanoseconds(library['median'])} | {library['spread'] * 50:.0f} % "
            f"| {nanoseconds(floor['median'])} | {ratio(library['median'], floor['median'])} "
            f"| {counted} | {taken} | "
            + (f"{peer[0]}: {ratio(peer[1]['median'], floor['median'])} |" if peer else "– |")
        )
    return "\n".join(lines[1:])


def verdict(times, counts, allocations):
    """How many operations keep within the targets, which do not, and whether all do."""
    lines = []
    held = True

    def judge(what, wrong, count):
        nonlocal held
        held = held and count > 0 and not wrong
        lines.append(
            f"- {what}: {count - len(wrong)} of {count} operations"
            + ("; not: " + ", ".join(wrong) if wrong else "")
            + "."
        )

    def judge_ratios(what, limit, ratios):
        over = sorted(((value, name) for name, value in ratios.items() if value > limit))
        wrong = [f"{name} ({value:.2f})" for value, name in reversed(over)]
        judge(f"{what} at most {limit}", wrong, len(ratios))

    if times:
        judge_ratios(
            "Time to the floor",
            TIME_TARGET,
            {each["operation"]: time_ratio(each) for each in times},
        )
    if counts:  # not in a quick run
        judge_ratios(
            "Instructions to the floor",
            1.03,
            {
                name: count / counts[name, "floor"]
                for (name, who), count in counts.items()
                if who == "library"
            },
        )
    wrong = [each["operation"] for each in allocations if each["library"] != each["required"]]
    judge("Blocks exactly as promised", wrong, len(allocations))
    return "\n".join(lines), held


def sees_defects():
    """Whether an instruction and a block too many are told from as many as there may be."""

    def holds(instructions, blocks):
        counts = {("planted", "library"): instructions, ("planted", "floor"): 100}
        return verdict([], counts, [{"operation": "planted", "library": blocks, "required": 1}])[1]

    return holds(103, 1) and not holds(104, 1) and not holds(103, 2) and not holds(103, 0)


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


class Binary(typing.NamedTuple):
    """Bytes when stripped, relocations at load, those for the PLT, names given to others."""

    size: int
    relocations: int
    plt: int
    names: int


def binary_figures(library):
    with tempfile.TemporaryDirectory() as folder:
        stripped = os.path.join(folder, "stripped.so")
        output("strip", "--strip-unneeded", "-o", stripped, library)
        size = os.path.getsize(stripped)
    relocations = output("readelf", "--relocs", "--wide", library)
    plt = len(re.findall(r"R_X86_64_JUMP_SLO", relocations))
    all_relocations = len(re.findall(r"R_X86_64_", relocations))
    names = len(output("nm", "--dynamic", "--defined-only", library).splitlines())
    return Binary(size, all_relocations, plt, names)


def binary_table(library, floor):
    lines = [
        "| | Stripped | Relocations | of them for the PLT | Exported names |",
        "|---|--:|--:|--:|--:|",
    ]
    for name, path in (("library", library), ("floor", floor)):
        size, relocations, plt, names = binary_figures(path)
        lines.append(f"| {name} | {size / 1024:.0f} KiB | {relocations} | {plt} | {names} |")
    return "\n".join(lines)


def growth_table(growth):
    sizes = {}
    for each in growth:
        sizes.setdefault((each["what"], each["unit"]), []).append(
            f"{each['size']}: {each['value']:.3g}"
        )
    lines = ["| | Unit | Figures |", "|---|---|---|"]
    lines += [f"| {what} | {unit} | {'; '.join(each)} |" for (what, unit), each in sizes.items()]
    return "\n".join(lines)


def machine():
    cpu = re.search(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(), re.M)
    memory = re.search(r"MemTotal:\s+(\d+)", pathlib.Path("/proc/meminfo").read_text())
    system = re.search(
        r'^PRETTY_NAME="(.*)"$', pathlib.Path("/etc/os-release").read_text(), re.M
    )
    compiler = output("g++", "--version").splitlines()[0]
    qt = output("dpkg-query", "--show", "--showformat=${Version}", "libqt6core6")
    return (
        f"{cpu.group(1) if cpu else platform.machine()}, {os.cpu_count()} cores, "
        f"{int(memory.group(1)) // 1024 // 1024} GiB; {system.group(1)}, "
        f"Linux {platform.release()}; {compiler}; Qt {qt}; glibc {platform.libc_ver()[1]}."
    )


def plot(times, target):
    left, right = 1 / 16, 8

    def within(value):
        return min(max(value, left), right)

    rows = []
    for each in reversed(times):
        contenders = each["times"]
        floor = contenders["floor"]["median"]
        peer = best_peer(contenders)
        rows.append(
            f"\"{each['operation']}\" {within(contenders['library']['median'] / floor):.3f} "
            + (f"{within(peer[1]['median'] / floor):.3f}" if peer else "NaN")
        )
    script = f"""
set terminal svg noenhanced size 900,{120 + 15 * len(rows)} font 'sans,10' background 'white'
set output '{target}'
set title 'Median time, as a ratio to the floor (left of 1 is faster; what is beyond an edge lies on it)'
set logscale x 2
set xrange [{left * 0.9}:{right * 1.1}]
set yrange [-1:{len(rows)}]
set grid x
set key outside top center horizontal
set arrow from 1,-1 to 1,{len(rows)} nohead lw 2 lc 'gray'
set arrow from 1.05,-1 to 1.05,{len(rows)} nohead dt 3 lc 'gray'
plot '-' using 2:0:ytic(1) with points pt 7 ps 0.6 lc 'dark-blue' title 'library', \\
     '-' using 3:0 with points pt 6 ps 0.6 lc 'orange-red' title 'best peer'
""" + 2 * ("\n".join(rows) + "\ne\n")
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def replace_marked(text, name, content):
    pattern = re.compile(rf"(<!-- {name} -->\n).*?(<!-- end -->)", re.S)
    if not pattern.search(text):
        raise SystemExit(f"report.py: no mark for {name}")
    return pattern.sub(lambda match: f"{match[1]}{content}\n{match[2]}", text)


def main():
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    times = load_times(folder)
    choices = {"--close": is_close, "--wide": is_wide}
    if sys.argv[2] in choices:
        print(pattern(times, choices[sys.argv[2]]))
        return
    library, floor = map(pathlib.Path, sys.argv[2:4])
    allocations = load(folder / "allocations.json")
    counts = instructions(folder)
    targets, held = verdict(times, counts, allocations)
    if "--check" in sys.argv:
        if not sees_defects():
            raise SystemExit("report.py: planted defects are not seen")
        plt = binary_figures(library).plt
        print(f"{targets}\n- Relocations for the PLT: {plt}.")
        raise SystemExit(0 if held and counts and plt == 0 else 1)
    (folder / "times.json").write_text(json.dumps(times, indent=1))
    figures = {
        "instructions": [
            {"operation": name, "contender": who, "instructions": count}
            for (name, who), count in sorted(counts.items())
        ],
        "binary": {path.stem: binary_figures(path)._asdict() for path in (library, floor)},
    }
    (folder / "figures.json").write_text(json.dumps(figures, indent=1))
    sections = {
        "machine": machine(),
        "verdict": targets,
        "times": times_table(times, counts, allocations),
        "binary": binary_table(library, floor),
        "growth": growth_table(load(folder / "growth.json")),
    }
    for content in sections.values():
        print(content, end="\n\n")
    if "--update-docs" in sys.argv:
        docs = pathlib.Path(sys.argv[sys.argv.index("--update-docs") + 1])
        page = docs / "performance.md"
        text = page.read_text()
        for name, content in sections.items():
            text = replace_marked(text, name, content)
        page.write_text(text)
        plot(times, docs / "performance.svg")


if __name__ == "__main__":
    main()
