#!/usr/bin/env python3
"""Runs the production line of the page about exit codes:  run_exit_codes_page.py PROJECT_FOLDER PROGRAM [WINE]

The page's script and its blocks, as they stand there, for parts and stations of every kind: the shell's ones with ondscript as
PROGRAM, the batch file with ondhost, in a Windows prompt that WINE starts.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def main():
    root, program, wine = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
    page = (root / "docs/exit-codes.md").read_text(encoding="utf-8")

    def blocks(language):
        return re.findall(rf"^```{language}\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)

    (script,), (check, station), (batch,), (values,) = blocks("dcs"), blocks("sh"), blocks("bat"), blocks("json")

    def in_shell(text, folder, channel):
        shell = f"unit=A17 channel={channel}\n{text}"
        path = f"{program.parent}:{os.environ['PATH']}"
        return subprocess.run(["sh", "-c", shell], cwd=folder, env={**os.environ, "PATH": path}, capture_output=True, text=True,
                              timeout=60)

    def in_prompt(text, folder, channel):
        # PATH is not handed on to Windows programs.
        path = subprocess.run([*wine, "winepath", "-w", program.parent], capture_output=True, text=True, timeout=60).stdout.strip()
        start = f"@echo off\nset PATH=%PATH%;{path}\nset unit=A17\nset channel={channel}\n{text}"
        pathlib.Path(folder, "station.bat").write_text(start, newline="\r\n")
        with open(pathlib.Path(folder, "out.txt"), "w+", newline="") as output:
            code = subprocess.run([*wine, "cmd", "/c", "station.bat"], cwd=folder, stdout=output, stderr=subprocess.DEVNULL,
                                  timeout=120).returncode
            output.seek(0)
            return subprocess.CompletedProcess([], code, output.read().replace("\r\n", "\n"))

    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(root / "lib", pathlib.Path(folder, "lib"))

        def run(text, station_script, channel="sim"):
            pathlib.Path(folder, "test.dcs").write_text(station_script)
            done = (in_prompt if wine else in_shell)(text, folder, channel)
            return done.returncode, done.stdout

        line = batch if wine else station
        got = {} if wine else {
            "checked": run(check, script),
            "a mistake": run(check, script.replace("reading;", "reding;", 1)),
        }
        got |= {
            "a good part": run(line, script),
            "a bad part": run(line, script.replace("860", "845")),
            "values": json.loads(pathlib.Path(folder, "A17.json").read_text()),
            "page": pathlib.Path(folder, "A17.html").read_text(encoding="utf-8").startswith("<!DOCTYPE html>"),
            "a script that fails": run(line, script.replace("adc 1", "adc 9")),
            "no device": run(line, script, "tcp:127.0.0.1:1"),
            "a wrong channel": run(line, script, "tpc:127.0.0.1:1"),
        }
    expected = {
        "checked": (0, ""),
        "a mistake": (
            1, "test.dcs:5:1: error: Unknown identifier: `reading` is not known here; also in line 6, 7\n"
            '    5 | reading = strtoint32(executesubscriptfunc("lib\\\\device.dcs", "ask", "adc 1"));\n'
            "      | ^~~~~~~\n      = did you mean `reding`?\n"),
        "a good part": (0, "A17: passed\n"),
        "a bad part": (0, "A17: failed\n"),
        "values": json.loads(values),
        "page": True,
        "a script that fails": (0, "A17: not tested\n"),
        "no device": (0, "device is not available\n"),
        "a wrong channel": (0, "station is set up wrong\n"),
    }
    for name, result in got.items():
        if result != expected[name]:
            print(f"{name}: {result}, expected {expected[name]}")
    sys.exit(any(result != expected[name] for name, result in got.items()))


if __name__ == "__main__":
    main()
