#!/usr/bin/env python3
"""Plants single faults in the library, one at a time, and tells which of them no test sees.

For each fault one object is compiled and the library linked anew, beside the build, and the tests
that cover the file run against it: first those of coverage.toml without the slow ones, and if they
all pass, the whole programs that they belong to. The sources are never touched.

What passes them all is a survivor: an equivalent, which equivalents.toml argues (or the compiler
proves, where it makes the same code of both), or a gap in the tests. Results are kept in
BUILD/mutation/results.json; a fault already killed is not planted again while its file stands.
"""

import argparse
import collections
import dataclasses
import fnmatch
import hashlib
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import time
import tomllib

import faults

PROJECT = pathlib.Path(__file__).resolve().parents[2]
TABLES = pathlib.Path(__file__).resolve().parent

LIBRARY = "src/libBaseUtilities.so"

SURVIVED, KILLED, HUNG, REFUSED, SAME = "survived", "killed", "hung", "refused", "same code"


class Unusable(Exception):
    """The run can tell nothing: the tests fail without a fault, or see none."""


@dataclasses.dataclass
class Outcome:
    status: str
    by: str = ""


@dataclasses.dataclass
class Mutant:
    file: str
    fault: faults.Fault
    before: str
    after: str
    line: int
    number: int  # among the faults of this file that read alike

    @property
    def key(self):
        text = "\0".join([self.file, self.fault.kind, self.before, self.after, str(self.number)])
        return hashlib.sha256(text.encode()).hexdigest()[:16]

    def __str__(self):
        return f"{self.file}:{self.line}: {self.fault.kind}\n    - {self.before}\n    + {self.after}"


class Build:
    """The commands of an existing build, and what they make of a fault."""

    def __init__(self, folder, work):
        self.folder = folder
        self.work = work
        text = (folder / "compile_commands.json").read_text()
        self.commands = collections.defaultdict(list)  # a file may belong to several targets
        for entry in json.loads(text):
            self.commands[entry["file"]].append(shlex.split(entry["command"]))
        cache = (folder / "CMakeCache.txt").read_text()
        self.compiler = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache, re.MULTILINE)[1]
        for name in ("objects", "sources", "library", "programs", "temporary"):
            (work / name).mkdir(parents=True, exist_ok=True)
        self.kept_headers = {}
        self.links = {}

    def compile_line(self, source):
        """What the build makes of a file: the options, and the names of the objects."""
        commands = self.commands.get(str(PROJECT / source))
        if commands is None:
            raise Unusable(f"{self.folder} compiles no {source}: is it a unity build?")
        objects = [words[words.index("-o") + 1] for words in commands]
        words = commands[0][commands[0].index(self.compiler) + 1 :]
        options, skip = [], False
        for word in words:
            if skip or word in ("-c", "-o", str(PROJECT / source)):
                skip = word == "-o"
            elif not re.match(r"-[gWO]", word):
                options.append(word)
        return options, objects

    def compile(self, source, text, overlay=None, optimise=False):
        """The object of `text` in place of the file, under the names of those that it stands for.

        None where the compiler refuses it.
        """
        options, objects = self.compile_line(source)
        copy = self.work / "sources" / pathlib.Path(source).name
        copy.write_text(text)
        made = self.work / "objects" / (pathlib.Path(source).name + ".o")
        command = [self.compiler]
        if overlay:
            command += ["-I", str(overlay), "-iquote", str(overlay)]
        if optimise:
            command += ["-O2"]
        else:
            command += ["-O0", "-include", str(self.kept_header(source, options))]
        command += options + ["-w", "-iquote", str((PROJECT / source).parent)]
        command += ["-c", str(copy), "-o", str(made)]
        done = subprocess.run(command, cwd=self.folder, capture_output=True, text=True)
        return dict.fromkeys(objects, made) if done.returncode == 0 else None

    def kept_header(self, source, options):
        """What the file includes from elsewhere, compiled once: most of the work, always the same."""
        if source not in self.kept_headers:
            header = self.work / "headers" / pathlib.Path(source).stem / "elsewhere.h"
            header.parent.mkdir(parents=True, exist_ok=True)
            names = sorted(self.includes(PROJECT / source, set()))
            header.write_text("".join(f"#include <{name}>\n" for name in names))
            command = [self.compiler, "-O0", *options, "-w", "-x", "c++-header", str(header)]
            subprocess.run(command + ["-o", f"{header}.gch"], cwd=self.folder, check=True)
            self.kept_headers[source] = header
        return self.kept_headers[source]

    def includes(self, path, seen):
        """The headers from elsewhere that a file of ours includes, directly or not."""
        seen.add(path)
        found = set()
        for bracket, name in re.findall(r'^#include ([<"])([^>"]+)', path.read_text(), re.MULTILINE):
            roots = [PROJECT / "include", path.parent, PROJECT / "tests/support"]
            own = next((root / name for root in roots if (root / name).exists()), None)
            if own is None and bracket == "<" and not name.startswith("BaseUtilities/"):
                found.add(name)
            elif own is not None and own not in seen:
                found |= self.includes(own, seen)
        return found

    def forget_headers(self):
        """They are large."""
        shutil.rmtree(self.work / "headers", ignore_errors=True)
        self.kept_headers = {}

    def link_line(self, target):
        if target not in self.links:
            done = subprocess.run(
                ["ninja", "-C", str(self.folder), "-t", "commands", "-s", target],
                capture_output=True,
                text=True,
                check=True,
            )
            line = done.stdout.strip().splitlines()[-1]
            words = shlex.split(re.sub(r"^: && | && :$", "", line))
            self.links[target] = words[words.index(self.compiler) :]
        return list(self.links[target])

    def link(self, target, objects, output):
        """Links a target of the build, with these objects before and instead of its own."""
        words = self.link_line(target)
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        own = [str(objects[word]) for word in words if word in objects]
        words = words[:first] + own + [word for word in words[first:] if word not in objects]
        words[words.index("-o") + 1] = str(output)
        words += ["-fuse-ld=gold"] if shutil.which("ld.gold") else []  # in a third of the time
        return subprocess.run(words, cwd=self.folder, capture_output=True).returncode == 0


class Tests:
    """The test programs, and how to run some of their tests against a library."""

    def __init__(self, build, limit):
        self.build = build
        self.limit = limit

    def suites(self, source):
        """The names of the suites that a file of tests defines."""
        text = (PROJECT / "tests" / source).read_text()
        names = re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+),", text, re.MULTILINE)
        return sorted(set(names))

    def filter(self, sources, without):
        patterns = []
        for name in sorted({name for source in sources for name in self.suites(source)}):
            patterns += [f"{name}.*", f"{name}/*", f"*/{name}.*"]
        return ":".join(patterns) + ("-" + ":".join(without) if without else "")

    def run(self, program, library, chosen):
        """Whether the tests pass; None when they come to no end."""
        temporary = self.build.work / "temporary"
        shutil.rmtree(temporary, ignore_errors=True)
        temporary.mkdir()
        environment = dict(os.environ)
        environment |= {"LD_LIBRARY_PATH": str(library), "TMPDIR": str(temporary)}
        words = [str(program), f"--gtest_filter={chosen}", "--gtest_fail_fast", "--gtest_brief=1"]
        process = subprocess.Popen(
            words,
            cwd=temporary,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            start_new_session=True,
            preexec_fn=self.restrict,
        )
        output = self.output(process)
        try:
            os.killpg(process.pid, signal.SIGKILL)  # what a test may have left behind
        except ProcessLookupError:
            pass
        if output is None:
            process.communicate()
            return None, ""
        text = output.decode(errors="replace")
        if process.returncode == 0:
            return bool(re.search(r"^\[  PASSED  \] [1-9]", text, re.MULTILINE)), "no test ran"
        failed = re.search(r"^\[  FAILED  \] (\S+?)(,| \(|$)", text, re.MULTILINE)
        return False, failed[1] if failed else f"status {process.returncode}"

    def output(self, process):
        """What the process printed; None when it waits for ever, or never stops working.

        By the time that it works, not by the clock: a busy machine must not look like a hang.
        """
        worked = 0.0
        while True:
            try:
                return process.communicate(timeout=self.limit)[0]
            except subprocess.TimeoutExpired:
                before, worked = worked, seconds_of_group(process.pid)
                if worked - before < self.limit / 1000 or worked > self.limit:
                    return None

    def restrict(self):
        """Keeps a fault from taking the machine: one that loops or writes ends here."""
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (60, 60))
        resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 28, 1 << 28))
        resource.setrlimit(resource.RLIMIT_AS, (1 << 33, 1 << 33))


def seconds_of_group(group):
    """The time that the processes of a group have worked so far."""
    ticks = 0
    for status in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = status.read_text().rpartition(")")[2].split()
        except OSError:
            continue  # it has just ended
        if int(fields[2]) == group:
            ticks += sum(int(field) for field in fields[11:15])
    return ticks / os.sysconf("SC_CLK_TCK")


def target_of(made):
    """The target that an object of the build belongs to."""
    return re.sub(r"/CMakeFiles/(\w+)\.dir/.*", r"/\1", made)


class Bench:
    """Tries faults: compiles, links, runs what covers the place."""

    def __init__(self, folder, limit):
        self.work = folder / "mutation"
        self.build = Build(folder, self.work)
        self.tests = Tests(self.build, limit)
        tables = tomllib.loads((TABLES / "coverage.toml").read_text())
        self.slow = tables["slow"]
        self.covers = {entry["file"]: entry for entry in tables["covers"]}

    def entry(self, file):
        if file not in self.covers:
            raise Unusable(f"coverage.toml does not say what covers {file}")
        return self.covers[file]

    def programs(self, entry, whole, only):
        """Program and filter: first the covering tests that are quick, then all of the program."""
        by_program = collections.defaultdict(list)
        for source in entry["tests"]:
            program = self.program_of(source)
            if program.endswith("/" + only) or not only:
                by_program[program].append(source)
        quick = [(p, self.tests.filter(s, self.slow)) for p, s in by_program.items()]
        return quick + [(program, "*") for program in by_program if whole]

    def program_of(self, source):
        _, objects = self.build.compile_line(f"tests/{source}")
        return target_of(objects[0])

    def attempt(self, file, text, whole=True, only=""):
        """What becomes of a file's text: the outcome of compiling, linking and testing it, by all
        programs of its tests or only one."""
        entry = self.entry(file)
        prepared = self.prepare(file, text, entry)
        if prepared is None:
            return Outcome(REFUSED)
        library, replaced = prepared
        for check, expected in [(c, True) for c in entry.get("compiles", [])] + [
            (c, False) for c in entry.get("refused", [])
        ]:
            if self.compiles(check) != expected:
                return Outcome(KILLED, f"{check} is refused" if expected else f"{check} compiles")
        for name, chosen in self.programs(entry, whole, only):
            program = replaced.get(name, self.build.folder / name)
            passed, by = self.tests.run(program, library, chosen)
            if passed is None:
                return Outcome(HUNG, name)
            if not passed:
                return Outcome(KILLED, by)
        return Outcome(SURVIVED)

    def prepare(self, file, text, entry):
        """The folder of the library with this text, and the programs built with it."""
        overlay, sources, texts = None, entry.get("sources", [file]), {file: text}
        if file.endswith(".h"):
            overlay = self.overlay(file, text)
            texts = {}
        objects = {}
        for source in sources + [f"tests/{source}" for source in entry.get("rebuilt", [])]:
            content = texts.get(source) or (PROJECT / source).read_text()
            made = self.build.compile(source, content, overlay)
            if made is None:
                return None
            objects |= made
        library, replaced = self.build.folder / "src", {}
        programs = {self.program_of(source) for source in entry["tests"]}
        for name in sorted({target_of(made) for made in objects}):
            if name == "src/BaseUtilities":
                library = self.build.work / "library"
                linked = self.build.link(LIBRARY, objects, library / "libBaseUtilities.so")
            elif name not in programs:
                continue  # shares a file with one of them
            else:
                replaced[name] = self.build.work / "programs" / pathlib.Path(name).name
                linked = self.build.link(name, objects, replaced[name])
            if not linked:
                return None
        return library, replaced

    def overlay(self, file, text):
        folder = self.build.work / "overlay"
        shutil.rmtree(folder, ignore_errors=True)
        public = file.removeprefix("include/")
        copy = folder / (public if public != file else pathlib.Path(file).name)
        copy.parent.mkdir(parents=True)
        copy.write_text(text)
        return folder

    def compiles(self, check):
        """Whether a file of tests, here with options of its own, satisfies the compiler."""
        source, *own = check.split(" ")
        options, _ = self.build.compile_line("tests/strings/CMemWrapperTest.cpp")
        command = [self.build.compiler, "-I", str(self.build.work / "overlay"), *options]
        command += ["-std=c++20", "-w", "-fsyntax-only", *own, str(PROJECT / "tests" / source)]
        return subprocess.run(command, capture_output=True).returncode == 0

    def is_same_code(self, file, text):
        """Whether the optimising compiler makes the same of the text as of the file itself."""
        if file.endswith(".h"):
            return False
        codes = []
        for content in ((PROJECT / file).read_text(), text):
            made = self.build.compile(file, content, optimise=True)
            codes.append(made and next(iter(made.values())).read_bytes())
        return codes[0] is not None and codes[0] == codes[1]


def mutants_of(file):
    source = (PROJECT / file).read_text()
    headers = sorted((PROJECT / "include/BaseUtilities").glob("*.h")) + [PROJECT / file]
    twins = {}
    for header in headers:
        twins |= faults.members(header.read_text())
    seen = collections.Counter()
    for fault in faults.find(source, twins):
        before, after = faults.lines(source, fault)
        seen[before, after] += 1
        line = source.count("\n", 0, fault.start) + 1
        yield Mutant(file, fault, before, after, line, seen[before, after])


class Equivalents:
    """The faults argued to change nothing that anyone can see."""

    def __init__(self):
        self.entries = tomllib.loads((TABLES / "equivalents.toml").read_text())["equivalent"]
        self.used = set()

    def covers(self, mutant):
        found = False
        for index, entry in enumerate(self.entries):
            if (entry["file"], entry["before"]) != (mutant.file, mutant.before):
                continue
            if entry.get("number", mutant.number) != mutant.number:
                continue
            for after in entry.get("after", []):
                if mutant.after == after:
                    self.used.add((index, after))
                    found = True
            if mutant.fault.kind in kinds_of(entry):
                self.used.add((index, mutant.fault.kind))
                found = True
        return found

    def stale(self, files):
        """Entries about a file that name no fault of it any more."""
        for index, entry in enumerate(self.entries):
            for named in entry.get("after", []) + kinds_of(entry):
                if entry["file"] in files and (index, named) not in self.used:
                    yield f"{entry['file']}: {entry['before']}: {named}"


def kinds_of(entry):
    """The kinds of fault that an argument is about as a whole."""
    return entry.get("kinds", [])


class SelfCheck:
    """Shows that tests pass without a fault, and see one that is known to be seen."""

    def __init__(self, bench):
        self.bench = bench
        self.planted = tomllib.loads((TABLES / "coverage.toml").read_text())["planted"]
        self.checked = set()

    def run(self, file):
        source = (PROJECT / file).read_text()
        outcome = self.bench.attempt(file, source, whole=False)
        if outcome.status != SURVIVED:
            raise Unusable(f"{file}: without a fault: {outcome.status} {outcome.by}")
        for program in sorted(self.programs(file)):
            if program not in self.checked:
                self.checked.add(program)
                self.check_program(program)

    def programs(self, file):
        return {self.bench.program_of(test) for test in self.bench.entry(file)["tests"]}

    def check_program(self, program):
        folder = self.bench.build.folder
        passed, by = self.bench.tests.run(folder / program, folder / "src", "*")
        if not passed:
            raise Unusable(f"{program} fails without a fault: {by or 'it comes to no end'}")
        planted = [entry for entry in self.planted if program.endswith("/" + entry["program"])]
        if not planted:
            raise Unusable(f"coverage.toml names no fault that {program} is known to see")
        for entry in planted:
            self.check_planted(entry)

    def check_planted(self, entry):
        file, before, after = entry["file"], entry["before"], entry["after"]
        source = (PROJECT / file).read_text()
        if source.count(before) != 1:
            raise Unusable(f"{file}: no place for the planted fault: {before}")
        outcome = self.bench.attempt(file, source.replace(before, after), only=entry["program"])
        if outcome.status not in (KILLED, HUNG):
            raise Unusable(f"{file}: {entry['program']}: a planted fault is {outcome.status}")
        print(f"Seen, as it must be: {file}: {before.strip()} ({outcome.by})", flush=True)


class Run:
    def __init__(self, bench, results, again):
        self.bench = bench
        self.again = again
        self.path = results
        self.results = json.loads(results.read_text()) if results.exists() else {}
        self.digests = {}

    def digest(self, file):
        if file not in self.digests:
            text = (PROJECT / file).read_bytes()
            self.digests[file] = hashlib.sha256(text).hexdigest()[:16]
        return self.digests[file]

    def known(self, mutant):
        """An earlier outcome that stands: all but a survival, which a new test may have ended."""
        kept = None if self.again else self.results.get(mutant.key)
        if kept and kept["digest"] == self.digest(mutant.file) and kept["status"] != SURVIVED:
            return kept
        return None

    def attempt(self, mutant):
        text = faults.planted((PROJECT / mutant.file).read_text(), mutant.fault)
        outcome = self.bench.attempt(mutant.file, text)
        if outcome.status == SURVIVED and self.bench.is_same_code(mutant.file, text):
            outcome = Outcome(SAME)
        kept = {"status": outcome.status, "by": outcome.by, "digest": self.digest(mutant.file)}
        kept |= {"file": mutant.file, "line": mutant.line, "kind": mutant.fault.kind}
        self.results[mutant.key] = kept | {"before": mutant.before, "after": mutant.after}
        waiting = self.path.with_suffix(".new")
        waiting.write_text(json.dumps(self.results, indent=1))
        waiting.replace(self.path)
        return self.results[mutant.key]


def report(counts, survivors, seconds):
    heads = ("faults", "killed", "hung", "equivalent", "survived", "refused")
    print(f"\n{'':44}" + "".join(f"{head:>11}" for head in heads))
    total = collections.Counter()
    for file, count in sorted(counts.items()):
        total.update(count)
        print(row(file, count))
    print(row("All", total))
    if total["not tried"]:
        print(f"\nNot tried: {total['not tried']}.")
    dead = total[KILLED] + total[HUNG]
    judged = dead + total[SURVIVED]
    share = 100 * dead / judged if judged else 0.0
    print(f"\nKilled: {dead} of {judged} that are not equivalent, {share:.1f} %.")
    print(f"Refused by the compiler and not counted: {total[REFUSED]}. {seconds:.0f} seconds.")
    for mutant in survivors:
        print(f"\nSurvived: {mutant}")
    return share


def row(name, count):
    same = count[SAME] + count["equivalent"]
    planted = count[KILLED] + count[HUNG] + count[SURVIVED] + same
    cells = (planted, count[KILLED], count[HUNG], same, count[SURVIVED], count[REFUSED])
    return f"{name:44}" + "".join(f"{cell:11}" for cell in cells)


def chosen_files(patterns):
    tracked = subprocess.run(
        ["git", "ls-files", "src/*.cpp", "src/*.h", "include/*.h"],
        cwd=PROJECT,
        capture_output=True,
        text=True,
        check=True,
    ).stdout.split()
    patterns = patterns or ["*"]
    files = [f for f in tracked if any(fnmatch.fnmatch(f, pattern) for pattern in patterns)]
    if not files:
        sys.exit("mutate: no such file")
    return files


def of_each_kind(mutants, number, seed):
    """So many faults of each kind, or all where there are fewer."""
    chosen = []
    for kind in sorted({mutant.fault.kind for mutant in mutants}):
        alike = [mutant for mutant in mutants if mutant.fault.kind == kind]
        chosen += random.Random(seed).sample(alike, min(number, len(alike)))
    return chosen


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/mutation", help="a build with its tests")
    parser.add_argument("--file", action="append", help="pattern of the files to plant faults in")
    parser.add_argument("--sample", type=int, help="so many faults, chosen by the seed")
    parser.add_argument("--of-each-kind", type=int, help="so many of each kind, by the seed")
    parser.add_argument("--seed", default="1")
    parser.add_argument("--list", action="store_true", help="only print the faults")
    parser.add_argument("--report", action="store_true", help="only print what is known already")
    parser.add_argument("--again", action="store_true", help="try also what earlier runs have tried")
    parser.add_argument("--equivalents", action="store_true", help="try the argued ones as well")
    parser.add_argument("--limit", type=float, default=20, help="seconds of work for a test run")
    parser.add_argument("--demand", type=float, default=98, help="percentage that must be killed")
    return parser.parse_args()


def main():
    options = arguments()
    started = time.monotonic()
    files = chosen_files(options.file)
    mutants = [mutant for file in files for mutant in mutants_of(file)]
    if options.list:
        for mutant in mutants:
            print(mutant)
        print(f"{len(mutants)} faults.")
        return 0
    equivalents = Equivalents()
    argued = {mutant.key for mutant in mutants if equivalents.covers(mutant)}
    stale = list(equivalents.stale(files))
    if options.sample and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    if options.of_each_kind:
        unargued = [mutant for mutant in mutants if mutant.key not in argued]
        mutants = of_each_kind(unargued, options.of_each_kind, options.seed)
    folder = PROJECT / options.build
    bench = Bench(folder, options.limit)
    run = Run(bench, folder / "mutation" / "results.json", options.again)

    check, ready = SelfCheck(bench), None
    counts, survivors, wrong = collections.defaultdict(collections.Counter), [], []
    for mutant in sorted(mutants, key=lambda mutant: mutant.file):
        is_argued = mutant.key in argued
        if is_argued and not options.equivalents:
            counts[mutant.file]["equivalent"] += 1
            continue
        kept = run.known(mutant)
        if options.report:
            kept = run.results.get(mutant.key) or {"status": "not tried"}
        if kept is None:
            if ready != mutant.file:
                bench.build.forget_headers()
                check.run(mutant.file)
                ready = mutant.file
            kept = run.attempt(mutant)
        status = kept["status"]
        if is_argued and status in (SURVIVED, SAME):
            status = "equivalent"
        elif is_argued and status != REFUSED:
            wrong.append(f"{mutant}\n    {kept['by']}")
        elif status == SURVIVED:
            survivors.append(mutant)
            if not options.report:
                print(f"Survived: {mutant}", flush=True)
        counts[mutant.file][status] += 1

    share = report(counts, survivors, time.monotonic() - started)
    for text in stale:
        print(f"equivalents.toml names a fault that there is not: {text}")
    for text in wrong:
        print(f"Argued equivalent, but killed: {text}")
    return 0 if share >= options.demand and not stale and not wrong else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Unusable as reason:
        sys.exit(f"mutate: {reason}")
