#!/usr/bin/env python3
"""Runs every example of the language page:  run_language_page.py PAGE ONDSCRIPT

A script is a block marked `dcs`; a block marked `text` right behind it is its exact output. A script without one must run without
an error.
"""

import re
import subprocess
import sys
import tempfile

EXAMPLE = re.compile(r"^```dcs\n(.*?)^```\n(?:\n```text\n(.*?)^```$)?", re.MULTILINE | re.DOTALL)


def main():
    page, ondscript = sys.argv[1:3]
    with open(page, encoding="utf-8") as file:
        examples = EXAMPLE.findall(file.read())
    failures = 0
    for script, expected in examples:
        with tempfile.TemporaryDirectory() as folder:
            run = subprocess.run([ondscript, "run", "-"], input=script, cwd=folder, capture_output=True, text=True, timeout=60)
        if run.stdout != expected if expected else run.returncode != 0:
            failures += 1
            print(f"--- this script\n{script}--- should print\n{expected}--- printed\n{run.stdout}{run.stderr}")
    print(f"{len(examples)} examples, {failures} failed")
    sys.exit(1 if failures or not examples else 0)


if __name__ == "__main__":
    main()
