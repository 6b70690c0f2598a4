#!/usr/bin/env python3
"""Plants faults and counts which ones the tests notice:
  mutate.py [--count N] [--seed N] [--tests NAME,…] [--again | --list] [FOLDER…]

Each fault changes one place of the portable code (places.py says which and how). It is noticed when a native test fails or
does not end in time; what survives a fast build is planted once more under sanitizers, which see leaks and overruns.
The places are not chosen by hand: of all candidates of a folder, in the order of the sources, every n-th is taken, so that
COUNT remain; one that does not compile gives way to the next. Faults that change nothing that anybody could see stand in
equivalents.txt, with the reason, and are neither planted nor counted.

All happens in build/mutation: a copy of the sources, so that the checkout is never touched, and builds of its own. The report is
kept there too, as report.txt; --again takes from it what was noticed, and plants the rest of the choice.
"""

import argparse
import functools
import json
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import time

sys.dont_write_bytecode = True  # nothing beside the sources
import places  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build/mutation"
TREE, REPORT = WORK / "tree", WORK / "report.txt"
MEMORY = 6 << 30  # bytes that a program may ask for; some faults never stop asking
# How many faults each folder gets when nothing is said, and the tests that can notice them, the nearest first.
FOLDERS = {
    "platform": (15, ["platform", "util", "script", "scripts", "host"]),
    "util": (25, ["util", "filemanager", "script", "scripts", "commandline"]),
    "script": (60, ["scripts", "script", "language_page", "commandline"]),
    "scriptrt": (25, ["builtins", "scripts", "script", "language_page", "questions", "commandline"]),
    "host": (40, ["host", "commandline", "scripts", "streams", "channels", "trace", "replay", "verdicts", "answers",
                  "reports"]),
    "filemanager": (12, ["filemanager"]),
    "terminal": (12, ["terminal"]),
}


def copy_tree():
    """The sources as they are now; what is unchanged keeps its time, for the build."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            stdout=subprocess.PIPE).stdout.decode().split("\0")
    names = {name for name in listed if name and (ROOT / name).is_file()}
    for old in [path for path in TREE.rglob("*") if path.is_file() and str(path.relative_to(TREE)) not in names]:
        old.unlink()
    for name in sorted(names):
        source, target = ROOT / name, TREE / name
        if not target.exists() or source.read_bytes() != target.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)


def run(command, seconds, folder, memory=resource.RLIM_INFINITY):
    """Exit code and output of a command; None for a code when it did not end in time. Ends all that it started."""

    def prepare():  # what a program under test starts with, however this one was started
        resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
        for end in (signal.SIGINT, signal.SIGHUP):
            signal.signal(end, signal.SIG_DFL)

    process = subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                               start_new_session=True, preexec_fn=prepare)
    try:
        output, _ = process.communicate(timeout=seconds)
        return process.returncode, output.decode(errors="replace")
    except subprocess.TimeoutExpired:
        return None, ""
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()


class Build:
    """A build of the copy."""

    def __init__(self, name, options, memory=resource.RLIM_INFINITY):
        self.name, self.options, self.memory = name, options, memory
        self.folder = WORK / name

    def make(self, targets):
        return run(["cmake", "--build", self.folder, "-j1", "--target", *targets], 1800, ROOT)

    def configure(self):
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        code, output = run(["cmake", "-S", TREE, "-B", self.folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", *self.options,
                            *launcher], 120, ROOT)
        self.must(code == 0, "configuring fails", output)

    def must(self, holds, what, output):
        if not holds:
            sys.exit(f"mutation: without a fault, {what} ({self.name})\n{output[-3000:]}")


FAST = Build("native", ["-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w -D_GLIBCXX_ASSERTIONS"], MEMORY)
# Address sanitizer asks for terabytes that it never touches.
SANITIZED = Build("sanitized", ["-DCMAKE_CXX_FLAGS_DEBUG=-O1 -w -D_GLIBCXX_ASSERTIONS", "-DOND_SANITIZE=ON"])


class Test:
    """One of ctest's, with the time that it takes when all is well."""

    def __init__(self, name, entry, build):
        self.name = name if build is FAST else f"{name} ({build.name})"
        self.build = build
        self.command = [word.replace(str(FAST.folder), str(build.folder)) for word in entry["command"]]
        folder = next(item["value"] for item in entry["properties"] if item["name"] == "WORKING_DIRECTORY")
        self.folder = folder.replace(str(FAST.folder), str(build.folder))
        # Nothing is built but the programs that it names.
        self.targets = [word.removeprefix(f"{build.folder}/") for word in self.command if word.startswith(f"{build.folder}/bin/")]
        code, output = self.make()
        build.must(code == 0, "the build fails", output)
        start = time.monotonic()
        code, output = self.run(600)
        build.must(code == 0, f"the test {name} fails", output)
        self.patience = 5 * (time.monotonic() - start) + 10

    def make(self):
        return self.build.make(self.targets or ["all"])

    def run(self, seconds):
        return run(self.command, seconds, self.folder, self.build.memory)

    def answer(self):
        """What notices a fault: this test, "" for nothing, None when the fault does not compile."""
        code, _ = self.make()
        if code != 0:
            return None
        code, _ = self.run(self.patience)
        return "" if code == 0 else f"{self.name}, time-out" if code is None else self.name


class Tests:
    """By ctest's name, in each of the builds; "scripts" is "scripts.ondscript"."""

    def __init__(self, names):
        FAST.configure()
        self.entries = self.listed()
        if any("command" not in self.entries[name] for name in names):  # as of programs that were never built
            code, output = FAST.make(["all"])
            FAST.must(code == 0, "the build fails", output)
            self.entries = self.listed()
        self.loaded = {}
        self.load(sorted(names), FAST)

    @staticmethod
    def listed():
        listed = json.loads(subprocess.run(["ctest", "--show-only=json-v1"], cwd=FAST.folder, check=True,
                                           stdout=subprocess.PIPE).stdout)
        return {entry["name"].removesuffix(".ondscript"): entry for entry in listed["tests"]}

    def load(self, names, build):
        """These must not be loaded for the first time while a fault is planted."""
        if build is not FAST and (build, names[0]) not in self.loaded:
            build.configure()
        for name in names:
            if (build, name) not in self.loaded:
                self.loaded[build, name] = Test(name, self.entries[name], build)
        return [self.loaded[build, name] for name in names]


def candidates(folder):
    """Of the sources and headers that take part in the native build."""
    depended = subprocess.run(["ninja", "-C", FAST.folder, "-t", "deps"], check=True, stdout=subprocess.PIPE).stdout.decode()
    paths = {(FAST.folder / line.strip()).resolve() for line in depended.splitlines() if line.startswith("    ")}
    return [mutant for path in sorted(paths) if path.is_relative_to(TREE / folder)
            for mutant in places.mutants(str(path.relative_to(TREE)), path.read_text())]


def order_of_choice(count, total, seed):
    """Indexes: first `count` spread evenly, then the others, which step in."""
    step = max(total / count, 1)
    first = [(int(i * step) + seed) % total for i in range(min(count, total))]
    return list(dict.fromkeys((index + shift) % total for shift in range(int(step) + 1) for index in first))


def load_equivalents():
    """(path, or path and function; line before; line after) -> reason."""
    blocks = (ROOT / "tests/mutation/equivalents.txt").read_text().split("\n\n")[1:]
    rows = [block.strip().split("\n") for block in blocks]
    return {(place, before.removeprefix("- "), after.removeprefix("+ ")): " ".join(reason)
            for place, before, after, *reason in rows}


def load_noticed():
    """The same keys, of the last report."""
    lines = REPORT.read_text().splitlines()
    return {(line.removeprefix("noticed ").split(",")[0], lines[i + 1].removeprefix("- "), lines[i + 2].removeprefix("+ "))
            for i, line in enumerate(lines) if line.startswith("noticed ")}


def plant(mutant, tests):
    """What notices the fault, as Test.answer."""
    path = TREE / mutant.path
    whole = path.read_text()
    try:
        path.write_text(mutant.text)
        return next((answer for answer in (test.answer() for test in tests) if answer != ""), "")
    finally:
        path.write_text(whole)


class Report:
    def __init__(self):
        self.file = REPORT.open("w", encoding="utf-8")
        self.rows = []

    def say(self, text):
        print(text, flush=True)
        print(text, file=self.file, flush=True)

    def folder(self, name, mutants, count, tests, equivalents, known):
        """Plants `count` of the mutants, the first ones that can be. tests(build): those of the folder. known: noticed before."""
        planted, noticed, late, equal, uncompiled = 0, 0, 0, 0, 0
        survivors = []
        for mutant in mutants:
            if planted == count:
                break
            if mutant.keys() & equivalents.keys():
                equal += 1
                continue
            answer = "an earlier run" if mutant.keys() & known else plant(mutant, tests(FAST))
            if answer is None:
                uncompiled += 1
                continue
            planted += 1
            if not answer:
                survivors.append(mutant)
                continue
            noticed += 1
            late += answer.endswith("time-out")
            self.tell(mutant, answer)
        for mutant in survivors:
            answer = plant(mutant, tests(SANITIZED)) or ""
            noticed += bool(answer)
            self.tell(mutant, answer)
        rate = f"{100 * noticed / planted:.0f} %" if planted else "-"
        self.rows.append(f"{name:12} {planted:8} {noticed:8} {rate:>6} {late:9} {equal:11} {uncompiled:11}")

    def tell(self, mutant, answer):
        self.say(f"{'noticed' if answer else 'survived'} {mutant.place()}, line {mutant.line}, {mutant.kind}"
                 f"{answer and ' by ' + answer}\n- {mutant.before}\n+ {mutant.after}")

    def close(self):
        self.say(f"\n{'folder':12}  planted  noticed   rate  time-out  equivalent  uncompiled")
        for row in self.rows:
            self.say(row)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, help="faults for each folder")
    parser.add_argument("--seed", type=int, default=0, help="shifts the choice by so many candidates")
    parser.add_argument("--again", action="store_true", help="believes what the last report says was noticed")
    parser.add_argument("--list", action="store_true", help="shows all candidates and plants none")
    parser.add_argument("--tests", help="only these of the folder's tests, with commas")
    parser.add_argument("folders", nargs="*", default=list(FOLDERS), metavar="FOLDER")
    options = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda *_: sys.exit("mutation: ended from outside"))  # what was started is ended too
    known = load_noticed() if options.again else set()
    copy_tree()
    names = {folder: options.tests.split(",") if options.tests else FOLDERS[folder.split("/")[0]][1] for folder in options.folders}
    tests = Tests(set(sum(names.values(), [])))
    found = {folder: candidates(folder) for folder in options.folders}
    if options.list:
        for mutant in sum(found.values(), []):
            print(f"{mutant.place()}, line {mutant.line}, {mutant.kind}\n- {mutant.before}\n+ {mutant.after}")
        return
    equivalents = load_equivalents()
    report = Report()
    keys_now = set().union(*(mutant.keys() for mutant in sum(found.values(), [])))
    for place, before, after in equivalents:
        if any(place.startswith(folder + "/") for folder in found) and (place, before, after) not in keys_now:
            report.say(f"equivalents.txt: this is gone from {place}\n- {before}\n+ {after}")
    for folder, mutants in found.items():
        count = options.count or FOLDERS[folder.split("/")[0]][0]
        chosen = [mutants[index] for index in order_of_choice(count, len(mutants), options.seed)]
        report.folder(folder, chosen, count, functools.partial(tests.load, names[folder]), equivalents, known)
    report.close()


if __name__ == "__main__":
    main()
