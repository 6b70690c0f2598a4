#!/usr/bin/env python3
"""How the engine's time and memory grow with what it is given:  growth.py ONDSCRIPT

User milliseconds of whole commands, medians, over inputs of 1, 2, 4 and 8 times the size; then how fast texts are read,
and the most memory that takes."""

import os
import pathlib
import subprocess
import sys
import tempfile

from commands import median_user, print_row, print_table


def declarations(n):
    """40 000 × n declarations"""
    names = range(40000 * n)
    return "".join(f"var int32 v{i};" for i in names) + "if(1){" + "".join(f"v{i}=1;" for i in names) + "}"


def parameters(n):
    """40 000 × n parameters"""
    names = range(40000 * n)
    return "func f(" + ",".join(f"var int32 p{i}" for i in names) + "){p0=1;}f(" + ",".join(map(str, names)) + ");"


def blocks(n):
    """2000 blocks nested 100 × n deep"""
    return "var int32 a;" + ("if(1){" * (100 * n) + "a=a+1;" + "}" * (100 * n)) * 2000


def recursion(n):
    """40 times 12 500 × n calls deep"""
    return ("func f(var int32 n) { if (n > 0) { f = 1 + f(n - 1); } else { f = 0; } } var int32 i;"
            "while (i < 40) { i += 1; print(f(%d)); }" % (12500 * n))


def repetitive(n):
    """`instr` of a repetitive 1 × n MiB in 5 × n MiB"""
    return ('var string s; var string t; s="aaaaaaaaaaaaaaaa"; while (strlen(s) < %d) { s += s; }'
            't = substr(s, 0, strlen(s) / 2) + "b"; print(instr(s + s + t, t));' % (n << 21))


def functions(n):
    """2.5 × n MB of functions, read"""
    text = ('func f%06d(var int32 a, var string s) { var int64 x; x = a * 3 + 1; if (x > 10) { s += "abc"; f%06d = x; } }\n')
    return "".join(text % (i, i) for i in range(22000 * n))


def subscripts(n):
    """3000 × n calls of a sub-script"""
    pathlib.Path("sub.dcs").write_text("var int32 a; a = 1;")
    return 'var int32 i; while (i < %d) { i += 1; executesubscript("sub.dcs"); }' % (3000 * n)


def subscript_functions(n):
    """3000 × n calls of a sub-script's function"""
    pathlib.Path("sub.dcs").write_text("func f(var int32 a) { f = a + 1; }")
    return 'var int32 i; while (i < %d) { i = executesubscriptfunc("sub.dcs", "f", i); }' % (3000 * n)


def large_subscript(n):
    """a sub-script of 2.5 × n MB, called"""
    pathlib.Path("sub.dcs").write_text(functions(n))
    return 'executesubscript("sub.dcs");'


# Few bytes for each thing that the program holds.
DENSE = {"a=a+b;": "var int32 a;var int32 b;", "f();": "func f(){}", "if(1){}": "", 's="a";': "var string s;",
         "func a1(){}": ""}


def most_memory(ondscript, script):
    """Bytes that checking a script takes at the most. The command is kept waiting for a second script, to be looked at."""
    with subprocess.Popen([ondscript, "check", str(script), "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
        process.stdout.readline()  # the problem at its end
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
        process.stdin.close()
    return int(status.split("VmHWM:")[1].split()[0]) * 1024


def print_growth(ondscript, script, output):
    print_table("grows, user ms", "1", "2", "4", "8")
    for make in (declarations, parameters, blocks, recursion, repetitive, functions, subscripts, subscript_functions,
                 large_subscript):
        times = []
        for n in (1, 2, 4, 8):
            script.write_text(make(n))
            times.append(f"{median_user([ondscript, 'run', str(script)], output):.0f}")
        print_row(make.__doc__, *times)


def print_reading(ondscript, script, output):
    script.write_text(functions(1))
    size = script.stat().st_size
    time = median_user([ondscript, "check", str(script)], output)
    print(f"\nReading {size / 1e6:.2f} MB of functions (`ondscript check`): {time:.0f} ms, {size / time / 1000:.0f} MB/s")
    print_table("reading 4 MB of", "bytes of memory for a byte")
    for piece, before in DENSE.items():
        script.write_text(before + piece * (4_000_000 // len(piece)) + "?")
        print_row(f"`{piece}`", f"{most_memory(ondscript, script) / script.stat().st_size:.1f}")


def main(ondscript):
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        files = pathlib.Path("grown.dcs"), pathlib.Path("out")
        print_growth(ondscript, *files)
        print_reading(ondscript, *files)
        os.chdir("/")


if __name__ == "__main__":
    main(str(pathlib.Path(sys.argv[1]).resolve()))
