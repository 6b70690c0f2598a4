#!/usr/bin/env python3
"""What the pages about reports and answers show, as it stands there:  run_reports_pages.py PROJECT_FOLDER ONDSCRIPT"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    problems = []

    def blocks(page, language):
        text = (root / "docs" / page).read_text(encoding="utf-8")
        return re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)

    def run(command, expected_code, expected_output, expected_messages=""):
        done = subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=60, shell=isinstance(command, str),
                              env={**os.environ, "PATH": f"{ondscript.parent}:{os.environ['PATH']}"})
        if (done.returncode, done.stderr) != (expected_code, expected_messages) or expected_output not in done.stdout:
            problems.append(f"{command}: {done}, expected {expected_output} {expected_messages}")

    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch, "examples")
        shutil.copytree(root / "examples", folder)
        shutil.copytree(root / "lib", folder.parent / "lib")
        # answers.md: a file for an example, and what becomes of one that does not fit
        answers, message = blocks("answers.md", "text")
        (folder / "bench.txt").write_text(answers)
        run([ondscript, "run", "calibrate.dcs", "--answers", "bench.txt"], 0, "Output 0 by Kim: offset -25 mV")
        (folder / "bench.txt").write_text(answers.replace("1010", "1300"))
        run([ondscript, "run", "calibrate.dcs", "--answers", "bench.txt"], 12, "", message)

        # reports.md: the commands, the lines of measurements, the formats
        (calls,), (script,), (lines,) = blocks("reports.md", "sh"), blocks("reports.md", "dcs"), blocks("reports.md", "text")
        for copy in ("power.dcs", "radio.dcs"):
            shutil.copy(folder / "accept.dcs", folder / copy)
        run(f"set -e\n{calls}", 0, "limit: full scale = 3.550 V, 3.500 to 3.600 V: PASS\n")
        written = {path.name for path in folder.glob("*.*l")} | {path.name for path in folder.glob("part.*")}
        if not {"accept.html", "accept.xml", "part.jsonl", "part.tap"} <= written:
            problems.append(f"the reports are {written}")
        (folder.parent / "page.dcs").write_text(script)
        run([ondscript, "run", "../page.dcs"], 10, lines, "ondscript: ../page.dcs: the part failed: limit: gain = 39, at least 40: FAIL\n")
        formats = re.findall(r"^\| `(\w+)` \| (?:people|build|the Test|programs)", (root / "docs/reports.md").read_text(), re.MULTILINE)
        known = subprocess.run([ondscript, "run", "x", "--report", "?=x"], capture_output=True, text=True, timeout=60).stderr
        if sorted(formats) != sorted(re.search(r"there are (.*)$", known, re.MULTILINE)[1].split(", ")):
            problems.append(f"docs/reports.md: the formats are not {formats}, but: {known}")
    for problem in problems:
        print(problem)
    sys.exit(bool(problems))


if __name__ == "__main__":
    main()
