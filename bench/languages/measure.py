#!/usr/bin/env python3
"""The same work in this language, Lua 5.4, Python 3 and Tcl, whole commands in turns:  measure.py ONDSCRIPT [NAME…]

For each NAME.dcs the medians of five turns, in milliseconds, and what part of the others' time ours is; then how the
engine's own time grows with its input. Stops when two of the same name print different things. With valgrind installed
also the machine's instructions that one run takes, which no other load on the machine changes."""

import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
NAMES = ["counting", "counting32", "nested", "crc", "calls", "references", "parameter", "scan", "split", "append", "print",
         "empty"]
TURNS = 5


def commands(ondscript, name):
    other = {"lua5.4": "lua", "python3": "py", "tclsh": "tcl"}
    yield [ondscript, "run", str(HERE / f"{name}.dcs")]
    for program, ending in other.items():
        # Not a launcher that looks for a version first.
        path = "/usr/bin/" + program if pathlib.Path("/usr/bin/" + program).exists() else program
        yield [path, str(HERE / f"{name}.{ending}")]


def timed(command, output):
    begin = time.perf_counter()
    with open(output, "wb") as file:
        subprocess.run(command, stdout=file, check=True)
    return (time.perf_counter() - begin) * 1000


def instructions(command):
    if not shutil.which("valgrind"):
        return "-"
    run = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command],
                         stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    count = int(re.search(rb"Collected : (\d+)", run.stderr).group(1))
    return f"{count / 1e6:.1f}"


def row(ondscript, name, folder):
    all_commands = list(commands(ondscript, name))
    times = [[] for _ in all_commands]
    for _ in range(TURNS):
        for i, command in enumerate(all_commands):
            times[i].append(timed(command, folder / str(i)))
    outputs = {(folder / str(i)).read_bytes() for i in range(len(all_commands))}
    if len(outputs) != 1:
        sys.exit(f"{name}: they print different things")
    ours, *others = [statistics.median(each) for each in times]
    cells = [f"{ours:.1f}"] + [f"{each:.1f}" for each in others] + [f"{ours / each:.2f}" for each in others]
    print(f"| {name} | " + " | ".join(cells) + f" | {instructions(all_commands[0])} |", flush=True)


def blocks(n):
    return "var int32 a;" + "if(1){" * (500 * n) + "a=a+1;" + "}" * (500 * n)


def declarations(n):
    names = range(10000 * n)
    return "".join(f"var int32 v{i};" for i in names) + "if(1){" + "".join(f"v{i}=1;" for i in names) + "}"


def parameters(n):
    names = range(10000 * n)
    return ("func f(" + ",".join(f"var int32 p{i}" for i in names) + "){p0=1;}f(" + ",".join(map(str, names)) + ");")


def repetitive(n):
    return ('var string s; var string t; s="aaaaaaaaaaaaaaaa"; while (strlen(s) < %d) { s += s; }'
            't = substr(s, 0, strlen(s) / 2) + "b"; print(instr(s + s + t, t));' % (262144 * n))


def functions(n):
    return "".join("func f%d(var int32 a, var string s) { var int64 x; x = a * 3 + 1; if (x > 10) { s += \"abc\"; f%d = x; } }\n"
                   % (i, i) for i in range(6250 * n))


def recursion(n):
    return "func f(var int32 n) { if (n > 0) { f = 1 + f(n - 1); } else { f = 0; } } print(f(%d));" % (25000 * n)


def growth(ondscript, make, folder):
    script = folder / "grown.dcs"
    cells = []
    for n in (1, 2, 4, 8):
        script.write_text(make(n))
        times = [timed([ondscript, "run", str(script)], folder / "out") for _ in range(TURNS)]
        cells.append(f"{statistics.median(times):.1f}")
    print(f"| {make.__name__} | " + " | ".join(cells) + " |", flush=True)


def main():
    ondscript, *names = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        print("| work | ours, ms | Lua | Python | Tcl | of Lua's time | of Python's | of Tcl's | million instructions |")
        print("|---|--:|--:|--:|--:|--:|--:|--:|--:|")
        for each in names or NAMES:
            row(ondscript, each, folder)
        if names:
            return
        print("\n| grows, ms | 1 | 2 | 4 | 8 |\n|---|--:|--:|--:|--:|")
        for make in (functions, blocks, declarations, parameters, repetitive, recursion):
            growth(ondscript, make, folder)


if __name__ == "__main__":
    main()
