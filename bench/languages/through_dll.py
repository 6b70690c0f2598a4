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


def main():
    native, wine, module = sys.argv[1:]
    scripts = [str(HERE / f"{name}.dcs") for name in NAMES]
    best = {}
    with tempfile.TemporaryDirectory() as folder:
        output = pathlib.Path(folder) / "out"
        for _ in range(TURNS):
            for way, command in (("native", [native]), ("module", [wine, module])):
                run(command + scripts, output)
                for line in output.read_text().splitlines():
                    script, time, count = line.rsplit(" ", 2)
                    name = pathlib.Path(script).stem
                    best[name, way] = min(best.get((name, way), 1e9), float(time))
                    if best.setdefault((name, "bytes"), count) != count:
                        sys.exit(f"{name}: OUTPUTS DIFFER between the native engine and the module")
    print_table("work, inside the run", "native, ms", "through the DLL, ms", "of the native time")
    for name in NAMES:
        ours, theirs = best[name, "native"], best[name, "module"]
        print_row(name, f"{ours:.3f}", f"{theirs:.3f}", f"{theirs / ours:.2f}")


if __name__ == "__main__":
    main()
