#!/usr/bin/env python3
"""Runs a page:  run_page.py PROJECT_FOLDER ONDSCRIPT PAGE

Every block of shell, one after the other, prints the block of text behind it, but for times. The page's script is ask.dcs. Its
device files, each behind a link to it, are those of examples/devices.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def timeless(text):
    text = re.sub(r"\d{4}-\d\d-\d\dT[\d:.]+Z", "DATE", text)
    text = re.sub(r"^ +\d+\.\d{6}", "TIME", text, flags=re.MULTILINE)
    return re.sub(r'\d+\.\d{3} s|cpu "\d+"', "TIME", text)


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    page = (root / "docs" / sys.argv[3]).read_text(encoding="utf-8")
    (script,) = re.findall(r"^```dcs\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    steps = re.findall(r"^```sh\n(.*?)^```\n\n```text\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    failed = len(steps) != page.count("```sh\n")
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "ask.dcs").write_text(script)
        for name, device in re.findall(r"(examples/devices/\w+\.sim)\):\n\n```sim\n(.*?)^```$", page, re.MULTILINE | re.DOTALL):
            if device != (root / name).read_text():
                failed = True
                print(f"{name} is not as the page shows it")
            shutil.copy(root / name, folder)
        for shell, text in steps:
            environment = {**os.environ, "PATH": f"{ondscript.parent}:{os.environ['PATH']}"}
            done = subprocess.run(["sh", "-c", shell], cwd=folder, env=environment, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, timeout=120, check=False)
            printed = re.sub(r"^Running as user .*\n", "", done.stdout)  # the analyser, when the tests run as root
            if timeless(printed) != timeless(text):
                failed = True
                print(f"{shell}prints\n{printed}and not\n{text}")
    sys.exit(1 if failed or not steps else 0)


if __name__ == "__main__":
    main()
