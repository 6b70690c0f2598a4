#!/usr/bin/env python3
"""Plants faults and counts which ones the tests notice:  mutate.py [--count N] [--seed N] [--again | --list] [FOLDER…]

Each fault changes one place of the portable code (places.py says which and how). It is noticed when a native test fails or
does not end in time. The places are not chosen by hand: of all candidates of a folder, in the order of the sources, every
n-th is taken, so that COUNT remain; one that does not compile gives way to the next. Faults that change nothing that anybody
could see stand in equivalents.txt, with the reason, and are neither planted nor counted.

All happens in build/mutation: a copy of the sources, so that the checkout is never touched, and a build of its own without
sanitizers. The report is kept there too, as report.txt; --again plants what it says survived.
"""

import argparse
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
TREE, BUILD, REPORT = WORK / "tree", WORK / "native", WORK / "report.txt"
MEMORY = 6 << 30  # bytes that a program may ask for; some faults never stop asking
# How many faults each folder gets when nothing is said, and the tests that can notice them, the nearest first.
FOLDERS = {
    "platform": (15, ["platform", "util", "script", "scripts", "host"]),
    "util": (25, ["util", "filemanager", "script", "scripts", "commandline"]),
    "script": (60, ["scripts", "script", "language_page", "commandline"]),
    "scriptrt": (25, ["builtins", "scripts", "script", "language_page", "questions", "commandline"]),
    "host": (40, ["host", "commandline", "scripts", "streams", "channels"]),
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


def prepare():
    """What a program under test starts with, however this one was started."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    signal.signal(signal.SIGINT, signal.SIG_DFL)


def run(command, seconds, folder):
    """Exit code and output of a command; None for a code when it did not end in time. Ends all that it started."""
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


def build(targets):
    return run(["cmake", "--build", BUILD, "-j1", "--target", *(targets or ["all"])], 1800, ROOT)


def configure():
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    code, output = run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w -D_GLIBCXX_ASSERTIONS", *launcher], 120, ROOT)
    if code == 0:
        code, output = build([])
    if code != 0:
        sys.exit(f"mutation: the build without faults fails\n{output[-3000:]}")


class Test:
    """One of ctest's, with the time that it takes when all is well."""

    def __init__(self, name, entry):
        self.name = name
        self.command = entry["command"]
        self.folder = next(item["value"] for item in entry["properties"] if item["name"] == "WORKING_DIRECTORY")
        # Nothing is built but the programs that it names.
        self.targets = [word.removeprefix(f"{BUILD}/") for word in self.command if word.startswith(f"{BUILD}/bin/")]
        start = time.monotonic()
        code, output = run(self.command, 600, self.folder)
        if code != 0:
            sys.exit(f"mutation: the test {name} fails without a fault\n{output[-3000:]}")
        self.patience = 5 * (time.monotonic() - start) + 10

    def answer(self):
        code, _ = run(self.command, self.patience, self.folder)
        return "" if code == 0 else f"{self.name}, time-out" if code is None else self.name


def load_tests(names):
    """Tests by name; "scripts" is "scripts.ondscript"."""
    listed = json.loads(subprocess.run(["ctest", "--show-only=json-v1"], cwd=BUILD, check=True, stdout=subprocess.PIPE).stdout)
    entries = {entry["name"].removesuffix(".ondscript"): entry for entry in listed["tests"]}
    return {name: Test(name, entries[name]) for name in sorted(names)}


def candidates(folder):
    """Of the sources and headers that take part in the native build."""
    depended = subprocess.run(["ninja", "-C", BUILD, "-t", "deps"], check=True, stdout=subprocess.PIPE).stdout.decode()
    paths = {(BUILD / line.strip()).resolve() for line in depended.splitlines() if line.startswith("    ")}
    return [mutant for path in sorted(paths) if path.is_relative_to(TREE / folder)
            for mutant in places.mutants(str(path.relative_to(TREE)), path.read_text())]


def order_of_choice(count, total, seed):
    """Indexes: first `count` spread evenly, then the others, which step in."""
    step = max(total / count, 1)
    first = [(int(i * step) + seed) % total for i in range(min(count, total))]
    return list(dict.fromkeys((index + shift) % total for shift in range(int(step) + 1) for index in first))


def load_equivalents():
    """(path, line before, line after) -> reason."""
    blocks = (ROOT / "tests/mutation/equivalents.txt").read_text().split("\n\n")[1:]
    rows = [block.strip().split("\n") for block in blocks]
    return {(path, before.removeprefix("- "), after.removeprefix("+ ")): " ".join(reason)
            for path, before, after, *reason in rows}


def load_survivors():
    """The same keys, of the last report."""
    lines = REPORT.read_text().splitlines()
    return {(line.split()[1].split(":")[0], lines[i + 1].removeprefix("- "), lines[i + 2].removeprefix("+ "))
            for i, line in enumerate(lines) if line.startswith("survived ")}


def plant(mutant, tests):
    """What notices the fault: a test, "" for none, None when the fault does not compile."""
    path = TREE / mutant.path
    whole = path.read_text()
    try:
        path.write_text(mutant.text)
        for test in tests:
            code, _ = build(test.targets)
            if code != 0:
                return None
            answer = test.answer()
            if answer:
                return answer
        return ""
    finally:
        path.write_text(whole)


class Report:
    def __init__(self):
        self.file = REPORT.open("w", encoding="utf-8")
        self.rows = []

    def say(self, text):
        print(text, flush=True)
        print(text, file=self.file, flush=True)

    def folder(self, name, mutants, count, tests, equivalents):
        """Plants `count` of the mutants, the first ones that can be."""
        planted, noticed, late, equal, uncompiled = 0, 0, 0, 0, 0
        for mutant in mutants:
            if planted == count:
                break
            if mutant.key() in equivalents:
                equal += 1
                continue
            answer = plant(mutant, tests)
            if answer is None:
                uncompiled += 1
                continue
            planted += 1
            noticed += answer != ""
            late += answer.endswith("time-out")
            self.say(f"{'noticed ' if answer else 'survived'} {mutant.path}:{mutant.line} {mutant.kind}"
                     f"{answer and ' by ' + answer}\n- {mutant.before}\n+ {mutant.after}")
        rate = f"{100 * noticed / planted:.0f} %" if planted else "-"
        self.rows.append(f"{name:12} {planted:8} {noticed:8} {rate:>6} {late:9} {equal:11} {uncompiled:11}")

    def close(self):
        self.say(f"\n{'folder':12}  planted  noticed   rate  time-out  equivalent  uncompiled")
        for row in self.rows:
            self.say(row)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, help="faults for each folder")
    parser.add_argument("--seed", type=int, default=0, help="shifts the choice by so many candidates")
    parser.add_argument("--again", action="store_true", help="plants the survivors of the last report")
    parser.add_argument("--list", action="store_true", help="shows all candidates and plants none")
    parser.add_argument("folders", nargs="*", default=list(FOLDERS), metavar="FOLDER")
    options = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda *_: sys.exit("mutation: ended from outside"))  # what was started is ended too
    survivors = load_survivors() if options.again else None
    copy_tree()
    configure()
    found = {folder: candidates(folder) for folder in options.folders}
    if options.list:
        for mutant in sum(found.values(), []):
            print(f"{mutant.path}:{mutant.line} {mutant.kind}\n- {mutant.before}\n+ {mutant.after}")
        return
    tests = load_tests({name for folder in options.folders for name in FOLDERS[folder][1]})
    equivalents = load_equivalents()
    report = Report()
    places_now = {mutant.key() for mutant in sum(found.values(), [])}
    for path, before, after in equivalents:
        if path.split("/")[0] in found and (path, before, after) not in places_now:
            report.say(f"equivalents.txt: this is gone from {path}\n- {before}\n+ {after}")
    for folder, mutants in found.items():
        count, names = FOLDERS[folder]
        count = options.count or count
        chosen = [mutants[index] for index in order_of_choice(count, len(mutants), options.seed)]
        if options.again:
            chosen = [mutant for mutant in mutants if mutant.key() in survivors]
            count = len(chosen)
        report.folder(folder, chosen, count, [tests[name] for name in names], equivalents)
    report.close()


if __name__ == "__main__":
    main()
