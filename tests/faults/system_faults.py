#!/usr/bin/env python3
"""Makes each system call behind file copy, folders, commands and keys fail, one at a time.

Usage: system_faults.py PROBE [--quick]

A first run under strace tells which calls an operation of PROBE makes. Then each of them, each
occurrence in turn, is made to fail with each error of a table, and what came of it is compared
with what the interface states: the result or the exact exception, the files, the current folder,
the terminal, the open descriptors. --quick takes two errors for each call instead of all.

A call that the tables below do not know fails the run: nothing is left out silently.
"""

import collections
import concurrent.futures
import errno
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

STATUS = 0x40000000

# What the call may fail with, the likely first.
ERRORS = {
    "stat": "EACCES ENOENT EIO ELOOP ENAMETOOLONG ENOMEM ENOTDIR",
    "stat-descriptor": "EIO ENOMEM EOVERFLOW",
    "open": "EACCES ENOSPC EMFILE ENFILE EIO EROFS ETXTBSY EINTR EDQUOT ENOENT ELOOP ENOMEM",
    "chmod-descriptor": "EPERM EIO EROFS",
    "sendfile": "ENOSPC EIO EDQUOT EFBIG EINTR ENOMEM EAGAIN",
    "read": "EIO EINTR EAGAIN EISDIR",
    "write": "ENOSPC EIO EDQUOT EFBIG EINTR",
    "close": "EIO ENOSPC EINTR EDQUOT",
    "flags": "EBADF EINVAL",
    "seek": "ESPIPE EINVAL",
    "getcwd": "ENOENT EACCES EIO ENOMEM",
    "chdir": "EACCES ENOENT EIO ELOOP ENOMEM ENAMETOOLONG",
    "start": "EAGAIN ENOMEM",
    "execve": "ENOENT EACCES ENOMEM E2BIG EIO",
    "wait": "ECHILD EINVAL EINTR",
    "map": "ENOMEM EAGAIN",
    "unmap": "EINVAL",
    "signal": "EINVAL",
    "get-attributes": "ENOTTY EIO EBADF",
    "set-attributes": "ENOTTY EIO EINTR EBADF",
    "count-keys": "ENOTTY EIO EINVAL",
}

# What different systems call the same.
KINDS = {
    "stat": "stat", "newfstatat": "stat", "lstat": "stat", "statx": "stat",
    "fstat": "stat-descriptor", "open": "open", "openat": "open", "creat": "open",
    "fchmod": "chmod-descriptor", "sendfile": "sendfile", "copy_file_range": "sendfile",
    "read": "read", "readv": "read", "write": "write", "writev": "write", "close": "close",
    "fcntl": "flags", "lseek": "seek", "getcwd": "getcwd", "chdir": "chdir", "clone": "start",
    "clone3": "start", "vfork": "start", "fork": "start", "execve": "execve", "wait4": "wait",
    "waitid": "wait", "mmap": "map", "munmap": "unmap", "rt_sigaction": "signal",
    "rt_sigprocmask": "signal",
}
TERMINAL_REQUESTS = {"TCGETS": "get-attributes", "TCSETS": "set-attributes",
                     "FIONREAD": "count-keys"}
# Operations that are run with a fault already there.
ALREADY = {"copy-by-streams": ("copy-over-old", ["-e", "inject=sendfile:error=EINVAL"])}
# How the heap grows is chance, and running out of memory is another test's subject.
IGNORED = {"brk", "futex", "getpid", "gettid", "getrandom", "mprotect", "madvise"}

Call = collections.namedtuple("Call", "syscall number kind subject nth")


class Landscape:
    """A new folder with all that the operations of the probe work on."""

    def __enter__(self):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="BaseUtilities-")).resolve()
        for folder in ("folder", "there", "home/Papers", "home/Documents", "home/.config",
                       "home/.local/share/applications"):
            (self.path / folder).mkdir(parents=True)
        (self.path / "from").write_text("contents")
        (self.path / "old").write_text("what was there")
        (self.path / "home/.config/user-dirs.dirs").write_text(
            'XDG_DOCUMENTS_DIR="$HOME/Papers"\n')
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path)

    def contents(self, name):
        file = self.path / name
        return file.read_text() if file.is_file() else None


class Run:
    """What one run of the probe did, in which paths below the folder are relative."""

    def __init__(self, landscape, output):
        relative = output.replace(str(landscape.path) + "/", "").replace(str(landscape.path), ".")
        fields = re.fullmatch(r"outcome: (.*)\nfolder: (.*)\ndescriptors: (.*)\nterminal: (.*)\n",
                              relative, re.DOTALL)
        self.outcome, self.folder, self.descriptors, self.terminal = (
            fields.groups() if fields else (f"no report: {output!r}", "", "", ""))
        self.source = landscape.contents("from")
        self.targets = {name: landscape.contents(name) for name in ("old", "new", "folder/from")}
        self.ran = [place for place in (".", "there") if (landscape.path / place / "ran").exists()]
        self.trace = ""


def run_probe(probe, operation, options):
    """Runs the probe under strace; gives what it did, with the trace."""
    operation, already = ALREADY.get(operation, (operation, []))
    with Landscape() as landscape:
        trace = landscape.path / "trace"
        home = landscape.path / "home"
        environment = {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(home), "LC_ALL": "C",
            "XDG_DATA_DIRS": str(landscape.path / "none"),
            **{name: os.environ[name] for name in ("LD_LIBRARY_PATH",) if name in os.environ}}
        done = subprocess.run(
            ["strace", "-o", trace, "-s", "4096", *already, *options, probe, operation,
             landscape.path],
            env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60,
            check=False)
        run = Run(landscape, done.stdout)
        if done.returncode != 0:
            run.outcome = f"ended with {done.returncode}: {done.stderr}"
        run.trace = trace.read_text(errors="replace").replace(str(landscape.path), "@")
        return run


def kind_of(syscall, arguments):
    if syscall == "ioctl":
        return next((kind for request, kind in TERMINAL_REQUESTS.items()
                     if re.match(rf"\d+, [^{{]*\b{request}\b", arguments)), None)
    if syscall in ("newfstatat", "statx") and re.match(r'\d+, ""', arguments):
        return "stat-descriptor"
    return KINDS.get(syscall)


def subject_of(arguments, descriptors):
    """The path that a call is about, directly or by way of a descriptor; relative."""
    arguments = re.sub(r'^(\d+), ""', r"\1", arguments)
    path = re.match(r'(?:AT_FDCWD, )?"([^"]*)"', arguments)
    if path:
        return re.sub(r"^@/?|/\.$", "", path[1]) or "."
    descriptor = re.match(r"(\d+)", arguments)
    return descriptors.get(descriptor[1], "") if descriptor else ""


def calls_between_marks(trace):
    """The calls of the operation itself, each with its number among those of the whole process."""
    numbers = collections.Counter()
    occurrences = collections.Counter()
    descriptors = {}
    calls = []
    inside = False
    for line in trace.splitlines():
        match = re.match(r"(\w+)\((.*)\)\s+= (\S+)", line)
        if not match:
            continue
        syscall, arguments, result = match.groups()
        numbers[syscall] += 1
        if '"/mark/' in arguments:
            inside = "begin" in arguments
            continue
        if not inside or syscall in IGNORED:
            continue
        kind = kind_of(syscall, arguments)
        subject = subject_of(arguments, descriptors)
        if kind == "open" and result.isdigit():
            descriptors[result] = subject
        occurrences[kind, subject] += 1
        calls.append(Call(syscall, numbers[syscall], kind or syscall, subject,
                          occurrences[kind, subject]))
    return calls


# What must come of a fault. `target` is what the destination of a copy holds, None without one;
# `ran` the folders in which a command ran.
Expected = collections.namedtuple("Expected", "outcome folder descriptors terminal target ran",
                                  defaults=(".", 0, "same", None, ()))


def is_missing(code):
    return code in (errno.ENOENT, errno.ENOTDIR)


def threw(what):
    return f"threw TQRunTimeException {STATUS}: {what}"


def copy_error(code, first, second=""):
    return threw(f"Unable to copy file '{first}' to .{second}':\n"
                 f"   status = {code} ({os.strerror(code)})")


class Copy:
    """A copy of "from" to `given`, which makes or replaces the file `made`."""

    def __init__(self, given, made, before, is_reporting=False):
        self.given, self.made, self.before = given, made, before
        self.is_reporting = is_reporting
        self.succeeds = Expected("returned " + made, target="contents")

    def fails(self, outcome, target, descriptors=0):
        if self.is_reporting:
            outcome = "returned nothing"
        return Expected(outcome, target=target, descriptors=descriptors)

    def untouched(self, outcome):
        return self.fails(outcome, self.before)

    def source_check(self, code):
        if is_missing(code):
            return self.untouched(threw("Unable to copy file 'Cannot copy from source: from does "
                                        "not exist.' to ''."))
        return self.untouched(copy_error(code, "from"))

    def query(self, code):
        return self.succeeds if is_missing(code) else self.untouched(copy_error(code, self.given))

    def comparison(self, code):
        if is_missing(code):
            return self.succeeds
        return self.untouched(copy_error(code, self.given, "from"))

    def parent_check(self, code):
        if is_missing(code):
            return self.untouched(threw("Unable to copy file '' to 'Cannot copy to destination: "
                                        f"{self.given} does not exist.'."))
        return self.untouched(copy_error(code, "."))

    def folder_check(self, code):
        if is_missing(code):  # taken for a file to come, which then turns out to be the folder
            return self.fails(threw(f"Destination file {self.given} is a directory."), "contents")
        return self.untouched(copy_error(code, self.given))

    def before_copy(self, code):
        return self.untouched(copy_error(code, "from", self.given))

    def before_copy_of_existing(self, code):
        return self.succeeds if is_missing(code) else self.before_copy(code)

    def before_copy_into_folder(self, code):
        return self.before_copy(errno.EISDIR if is_missing(code) else code)

    def transfer(self, code):
        return self.fails(copy_error(code, "from", self.given), "")

    def closing(self, code):
        # The tracer keeps the failing call from the system, so the descriptor stays open.
        return self.fails(copy_error(code, "from", self.given), "contents", descriptors=1)

    def verification(self, code):
        if is_missing(code):
            return self.fails(threw(f"Destination file {self.made} does not exist."), "contents")
        return self.fails(copy_error(code, self.made), "contents")

    def stream_failure(self, _):
        return self.transfer(errno.EIO)  # all that a stream says of its failures

    def reading(self, code):
        return self.succeeds if code == errno.EINTR else self.stream_failure(code)

    def reading_the_end(self, code):
        if code == errno.EINTR:
            return self.succeeds
        return self.fails(copy_error(errno.EIO, "from", self.given), "contents")

    def writing(self, code):
        return self.succeeds if code == errno.EINTR else self.transfer(code)

    def stream_rows(self):
        """Where the system cannot transfer from file to file."""
        return {
            "flags from 1": self.stream_failure,
            f"flags {self.made} 1": self.stream_failure,
            "seek from 1": self.stream_failure,
            f"seek {self.made} 1": self.stream_failure,
            "read from 1": self.reading,
            "read from 2": self.reading_the_end,
            f"write {self.made} 1": self.writing,
        }

    def table(self, given_before, given_copied, last_from):
        """By call: the status queries of `given` in order, then those of the copy itself."""
        table = {f"stat {self.given} {number}": verdict
                 for number, verdict in enumerate(given_before + given_copied, start=1)}
        table |= {f"stat {self.made} {number}": verdict for number, verdict in self.made_rows()}
        table |= {
            "stat from 1": self.source_check,
            "stat from 2": self.comparison,
            f"stat from {last_from}": self.before_copy,
            "open from 1": self.before_copy,
            f"open {self.made} 1": self.before_copy,
            f"chmod-descriptor {self.made} 1": self.transfer,
            f"sendfile {self.made} 1": self.transfer,
            f"close {self.made} 1": self.closing,
            "close from 1": self.closing,
        }
        return table

    def made_rows(self):
        if self.made == self.given:
            return []
        return [(1, self.before_copy_of_existing), (2, self.verification)]


def copy_tables():
    new = Copy("new", "new", None)
    new_table = new.table([new.query, new.query],
                          [new.before_copy_of_existing, new.verification], 2)
    tables = {"copy-to-new": (new, new_table | {"stat . 1": new.parent_check})}
    for name, is_reporting in (("copy-over-old", False), ("copy-reporting", True)):
        old = Copy("old", "old", "what was there", is_reporting)
        tables[name] = (old, old.table([old.query, old.comparison, old.query],
                                       [old.before_copy_of_existing, old.verification], 3))
    old, table = tables["copy-over-old"]
    tables["copy-by-streams"] = (old, table | old.stream_rows())
    folder = Copy("folder", "folder/from", None)
    tables["copy-into-folder"] = (folder, folder.table(
        [folder.query, folder.comparison, folder.folder_check],
        [folder.before_copy_into_folder], 3))
    return tables


def command_table(place):
    """A command run in the folder `place`, given as empty text where that is the current one."""
    done = Expected("returned true", ran=(place,))
    failed = Expected("returned false")

    def refused(code):
        return Expected(f"threw filesystem_error {code}")

    def always(expected):
        return lambda code: expected

    table = {
        "getcwd . 1": refused,
        f"stat {place} 1":
            lambda code: Expected("returned true", ran=(".",)) if is_missing(code)
            else refused(code),
        f"chdir {place} 1": refused,
        "start  1": always(failed),
        "map  1": always(failed),
        "unmap  1": always(done),
        "wait  1": lambda code: done if code == errno.EINTR else Expected("returned false",
                                                                         ran=(place,)),
        "chdir . 1":
            lambda code: Expected(f"threw filesystem_error {code}", folder=place, ran=(place,)),
        "execve": always(failed),
    }
    table |= {f"signal  {number}": always(done) for number in range(1, 13)}
    return done, table


def folder_table(usual, rows):
    done = Expected("returned " + usual)
    return done, {call: (lambda code, result=result: Expected("returned " + result))
                  for call, result in rows.items()}


def documents_table():
    """The folder that the user's configuration names, or the usual one without it."""
    suite = "Quillon Test Suite"
    named, usual = f"home/Papers/{suite}", f"home/Documents/{suite}"
    file = "home/.config/user-dirs.dirs"
    rows = {f"stat-descriptor {file} {number}": named for number in range(1, 5)}
    rows |= {f"read {file} {number}": named for number in (1, 2)}
    done, table = folder_table(named, rows | {"stat home/Papers 1": suite, "map  1": named})
    # Qt repeats what a signal interrupts; a close that the tracer keeps from the system leaves
    # the descriptor open.
    table[f"open {file} 1"] = lambda code: (
        done if code == errno.EINTR else done._replace(outcome="returned " + usual))
    table[f"close {file} 1"] = lambda code: (
        done if code == errno.EINTR else done._replace(descriptors=1))
    return done, table


def key_tables():
    key, nothing, end = (Expected(text) for text in
                         ("returned 107", "returned nothing", "returned -1"))
    unrestored = key._replace(terminal="changed")

    def always(expected):
        return lambda code: expected

    # Deliberate in the library: the attribute calls are not checked, so what could not be read
    # is applied all the same, and what cannot be restored stays. Setting also reads, before and
    # after.
    single = {"get-attributes  1": unrestored, "read  1": end, "set-attributes  2": unrestored}
    query = {"get-attributes  1": unrestored, "count-keys  1": nothing, "read  1": end,
             "set-attributes  4": unrestored}
    for number in range(1, 11):
        single.setdefault(f"get-attributes  {number}", key)
        query.setdefault(f"get-attributes  {number}", key)
        single.setdefault(f"set-attributes  {number}", key)
        query.setdefault(f"set-attributes  {number}", key)
    return {"key": (key, {call: always(expected) for call, expected in single.items()}),
            "key-query": (key, {call: always(expected) for call, expected in query.items()})}


def all_tables():
    """By operation: what comes of it without a fault, and by call what comes of a fault."""
    tables = {name: (copy.succeeds, table) for name, (copy, table) in copy_tables().items()}
    tables["command-there"] = command_table("there")
    tables["command-here"] = command_table(".")
    tables["documents"] = documents_table()
    tables["applications"] = folder_table("home/.local/share/applications/name", {
        "stat home/.local/share/applications 1": "name",
    })
    tables["data"] = folder_table("home/.local/share", {"stat home/.local/share 1": ""})
    return tables | key_tables()


class Checker:
    """Injects faults and counts them and what was found."""

    def __init__(self, probe, is_quick):
        self.probe = probe
        self.is_quick = is_quick
        self.injected = collections.Counter()
        self.findings = []
        self.pool = concurrent.futures.ThreadPoolExecutor(os.cpu_count())

    def differences(self, run, expected):
        written = [text for name, text in run.targets.items()
                   if text is not None and (name != "old" or text != "what was there")]
        made = written[0] if written else None
        if made is None and expected.target == "what was there":
            made = run.targets["old"]
        actual = Expected(run.outcome, run.folder, int(run.descriptors or -99), run.terminal, made,
                          tuple(run.ran))
        differences = [f"{field}: {is_now!r} instead of {wanted!r}" for field, is_now, wanted
                       in zip(Expected._fields, actual, expected) if is_now != wanted]
        if len(written) > 1:
            differences.append("more than one destination was written")
        if run.source != "contents":
            differences.append(f"the source holds {run.source!r}")
        return differences

    def inject(self, operation, syscall, number, error, options=()):
        """One run with one fault; None where strace injected nothing."""
        run = run_probe(self.probe, operation, [
            *options, "-e", f"trace={syscall},sendfile", "-e",
            f"inject={syscall}:error={error}:when={number}"])
        return run if re.search(rf"^(\d+ +)?{syscall}\(.*\(INJECTED\)", run.trace, re.M) else None

    def check(self, operation, name, kind, syscall, number, verdict, options=()):
        errors = ERRORS[kind].split()[:2 if self.is_quick else None]
        runs = self.pool.map(
            lambda error: self.inject(operation, syscall, number, error, options), errors)
        for error, run in zip(errors, runs):
            if run is None:
                self.findings.append(f"{operation}: {name}: {error} was not injected")
                continue
            self.injected[operation, kind] += 1
            self.findings += [f"{operation}: {name} with {error}: {difference}" for difference
                              in self.differences(run, verdict(getattr(errno, error)))]

    def check_operation(self, operation, usual, table):
        first = run_probe(self.probe, operation, [])
        self.findings += [f"{operation}: without a fault: {difference}"
                          for difference in self.differences(first, usual)]
        for call in calls_between_marks(first.trace):
            if operation in ALREADY and call.kind == "sendfile":
                continue
            name = f"{call.kind} {call.subject} {call.nth}"
            if call.kind not in ERRORS or name not in table:
                self.findings.append(f"{operation}: {call.syscall} ({name}) is not in the tables")
                continue
            self.check(operation, name, call.kind, call.syscall, call.number, table[name])
        if "execve" in table:  # in the new process, whose first it is
            self.check(operation, "execve", "execve", "execve", 1, table["execve"], ["-f"])

    def check_itself(self):
        """A fault that never comes must be missed, and one that comes must be noticed."""
        usual, _ = all_tables()["copy-to-new"]
        if self.inject("copy-to-new", "sendfile", 1000, "EIO") is not None:
            self.findings.append("planted: a fault that cannot come counts as injected")
        run = self.inject("copy-to-new", "sendfile", 1, "EIO")
        if run is None or not self.differences(run, usual):
            self.findings.append("planted: a failed transfer is taken for a copy")

    def report(self):
        kinds = collections.Counter()
        operations = collections.Counter()
        for (operation, kind), count in self.injected.items():
            kinds[kind] += count
            operations[operation] += count
        for name, count in [*operations.items(), *sorted(kinds.items())]:
            print(f"  {name:<44} {count:>6}")
        print(f"  {'in all':<44} {self.injected.total():>6} faults")
        self.findings += [f"{operation}: no fault was injected" for operation in all_tables()
                          if not operations[operation]]
        for finding in self.findings:
            print(f"  FOUND {finding}")


def is_permitted():
    """Whether strace can trace here; says why where it cannot."""
    tried = subprocess.run(["strace", "-o", os.devnull, "true"], capture_output=True, text=True,
                           check=False)
    if tried.returncode != 0:
        print(f"  strace is not permitted here: {tried.stderr.strip()}")
    return tried.returncode == 0


def main(arguments):
    if len(arguments) not in (1, 2) or arguments[1:] not in ([], ["--quick"]):
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 64
    probe = os.path.abspath(arguments[0])
    if not is_permitted():
        return 1
    checker = Checker(probe, is_quick=len(arguments) == 2)
    checker.check_itself()
    for operation, (usual, table) in all_tables().items():
        checker.check_operation(operation, usual, table)
    checker.report()
    return 1 if checker.findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
