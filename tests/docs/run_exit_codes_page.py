#!/usr/bin/env python3
"""Runs the production line of the page about exit codes:  run_exit_codes_page.py PROJECT_FOLDER ONDSCRIPT

The page's script and its two blocks of shell, as they stand there, for parts and stations of every kind.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    page = (root / "docs/exit-codes.md").read_text(encoding="utf-8")

    def blocks(language):
        return re.findall(rf"^```{language}\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)

    (script,), (check, station) = blocks("dcs"), blocks("sh")
    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(root / "examples/lib", pathlib.Path(folder, "lib"))

        def run(shell, text, channel="sim"):
            pathlib.Path(folder, "test.dcs").write_text(text)
            shell = f"unit=A17 channel={channel}\n{shell}"
            path = f"{ondscript.parent}:{os.environ['PATH']}"
            done = subprocess.run(["sh", "-c", shell], cwd=folder, env={**os.environ, "PATH": path}, capture_output=True, text=True,
                                  timeout=60)
            return done.returncode, done.stdout

        got = {
            "checked": run(check, script),
            "a mistake": run(check, script.replace("reading;", "reding;", 1)),
            "a good part": run(station, script),
            "a bad part": run(station, script.replace("860", "845")),
            "a script that fails": run(station, script.replace("adc 1", "adc 9")),
            "no device": run(station, script, "tcp:127.0.0.1:1"),
            "a wrong channel": run(station, script, "tpc:127.0.0.1:1"),
        }
    expected = {
        "checked": (0, ""),
        "a mistake": (1, "test.dcs:3:1: error: Unknown identifier\n"),
        "a good part": (0, "A17: passed\n"),
        "a bad part": (0, "A17: failed\n"),
        "a script that fails": (0, "A17: not tested\n"),
        "no device": (0, "device is not available\n"),
        "a wrong channel": (0, "station is set up wrong\n"),
    }
    for name, result in got.items():
        if result != expected[name]:
            print(f"{name}: {result}, expected {expected[name]}")
    sys.exit(got != expected)


if __name__ == "__main__":
    main()
