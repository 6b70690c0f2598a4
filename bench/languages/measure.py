#!/usr/bin/env python3
"""The same work in this language, Lua 5.4, Python 3 and Tcl, whole commands in turns:  measure.py ONDSCRIPT [NAME…]

For each NAME.dcs the medians of five turns, in milliseconds, and what part of the others' time ours is. Stops when two of
the same name print different things. With valgrind installed also the machine's instructions that one run takes, which
no other load on the machine changes."""

import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent))
from commands import TURNS, print_row, print_table, run

NAMES = ["counting", "counting32", "nested", "crc", "calls", "references", "parameter", "scan", "split", "append", "print",
         "empty"]
# Not a launcher that looks for a version first.
OTHERS = {"Lua": ("/usr/bin/lua5.4", "lua"), "Python": ("/usr/bin/python3", "py"), "Tcl": ("/usr/bin/tclsh", "tcl")}


def commands(ondscript, name):
    yield "ours", [ondscript, "run", str(HERE / f"{name}.dcs")]
    for language, (program, ending) in OTHERS.items():
        yield language, [program, str(HERE / f"{name}.{ending}")]


def instructions(command):
    if not shutil.which("valgrind"):
        return "-"
    process = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command],
                             stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    count = int(re.search(rb"Collected : (\d+)", process.stderr).group(1))
    return f"{count / 1e6:.1f}"


def check_alike(name, folder):
    ours = (folder / "ours").read_bytes()
    for language in OTHERS:
        theirs = (folder / language).read_bytes()
        if theirs != ours:
            sys.exit(f"{name}: OUTPUTS DIFFER: ours prints {ours[:200]}, {language} {theirs[:200]}")


def measure(ondscript, name, folder):
    turns = 10 * TURNS if name == "empty" else TURNS  # the less there is to do, the more chance has its hand in it
    times = {}
    for _ in range(turns):
        for language, command in commands(ondscript, name):
            times.setdefault(language, []).append(run(command, folder / language).wall)
    check_alike(name, folder)
    ours, *others = [statistics.median(each) for each in times.values()]
    print_row(name, f"{ours:.1f}", *(f"{each:.1f}" for each in others), *(f"{ours / each:.2f}" for each in others),
              instructions(next(commands(ondscript, name))[1]))


def main():
    ondscript, *names = sys.argv[1:]
    print_table("work", "ours, ms", *OTHERS, *(f"of {language}'s time" for language in OTHERS), "million instructions")
    with tempfile.TemporaryDirectory() as folder:
        for name in names or NAMES:
            measure(ondscript, name, pathlib.Path(folder))


if __name__ == "__main__":
    main()
