#!/usr/bin/env python3
"""Runs every example of the language page, beside the library:  run_language_page.py PROJECT_FOLDER ONDSCRIPT

A script is a block marked `dcs`; a block marked `text` right behind it is its exact output. A script without one must run without
an error.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

EXAMPLE = re.compile(r"^```dcs\n(.*?)^```\n(?:\n```text\n(.*?)^```$)?", re.MULTILINE | re.DOTALL)


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), sys.argv[2]
    examples = EXAMPLE.findall((root / "docs/language.md").read_text(encoding="utf-8"))
    failures = 0
    for script, expected in examples:
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(root / "lib", pathlib.Path(folder, "lib"))
            run = subprocess.run([ondscript, "run", "-"], input=script, cwd=folder, capture_output=True, text=True, timeout=60)
        if run.stdout != expected if expected else run.returncode != 0:
            failures += 1
            print(f"--- this script\n{script}--- should print\n{expected}--- printed\n{run.stdout}{run.stderr}")
    print(f"{len(examples)} examples, {failures} failed")
    sys.exit(1 if failures or not examples else 0)


if __name__ == "__main__":
    main()
