#!/usr/bin/env python3
"""The engine's own time for the same scripts, natively and through the DLL:  through_dll.py BENCH_ENGINE WINE BENCH_MODULE

Measured inside both programs, which run in turns; the least of all rounds, in milliseconds. WINE is what starts a Windows
program."""

import pathlib
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent))
from commands import print_row, print_table, run
from measure import NAMES

TURNS = 3


def measure(name, commands, output):
    """The least of all turns for each command, in milliseconds."""
    best = [float("inf")] * len(commands)
    printed = set()
    for _ in range(TURNS):
        for i, command in enumerate(commands):
            run([*command, str(HERE / f"{name}.dcs")], output)
            _, time, size = output.read_text().rsplit(" ", 2)
            best[i] = min(best[i], float(time))
            printed.add(size)
    if len(printed) != 1:
        sys.exit(f"{name}: OUTPUTS DIFFER between the native engine and the module")
    return best


def main():
    native, wine, module = sys.argv[1:]
    print_table("work, inside the run", "native, ms", "through the DLL, ms", "of the native time")
    with tempfile.TemporaryDirectory() as folder:
        for name in NAMES:
            ours, theirs = measure(name, [[native], [wine, module]], pathlib.Path(folder) / "out")
            print_row(name, f"{ours:.3f}", f"{theirs:.3f}", f"{theirs / ours:.2f}")


if __name__ == "__main__":
    main()
