#!/usr/bin/env python3
"""The page about the script library is the library:  run_library_page.py PROJECT_FOLDER ONDSCRIPT

Each function of lib/*.dcs, but for those that begin with `_`, stands in a table of its file's section with its parameters and its
comment, and is called by a script of the page; each script prints what is shown.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FUNCTION = re.compile(r"((?:^# .*\n)*)^func ([a-z]\w*)\((.*?)\)", re.MULTILINE | re.IGNORECASE)


def library_rows(folder):
    for path in sorted(folder.glob("*.dcs")):
        for comment, name, parameters in FUNCTION.findall(path.read_text()):
            names = ", ".join(parameter.split()[-1] for parameter in parameters.split(",") if parameter)
            yield path.name, f"{name}({names})", " ".join(line[2:] for line in comment.splitlines())


def page_rows(page):
    files = dict(re.findall(r"^\| \[`(\w+\.dcs)`\]\(#([\w-]+)\)", page, re.MULTILINE))
    for name, anchor in files.items():
        section = re.search(rf"^## {anchor.replace('-', ' ')}\n(.*?)(?=^## |\Z)", page, re.MULTILINE | re.DOTALL | re.IGNORECASE)[1]
        for call, text in re.findall(r"^\| `(\w+\(.*?\))` \| (.*?) \|$", section, re.MULTILINE):
            yield name, call, text


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), sys.argv[2]
    page = (root / "docs/library.md").read_text(encoding="utf-8")
    problems = []
    library, shown = set(library_rows(root / "lib")), set(page_rows(page))
    problems += [f"only in lib/: {row}" for row in library - shown] + [f"only on the page: {row}" for row in shown - library]
    problems += [f"{row[:2]} has no comment" for row in library if not row[2]]
    scripts = re.findall(r"^```dcs\n(.*?)^```\n\n```text\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    problems += [f"no script calls {call}" for _, call, _ in library
                 if not any(f'"{call.partition("(")[0]}"' in script for script, _ in scripts)]
    for script, expected in scripts:
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(root / "lib", pathlib.Path(folder, "lib"))
            run = subprocess.run([ondscript, "run", "-"], input=script, cwd=folder, capture_output=True, text=True, timeout=60)
        if run.stdout != expected or run.returncode not in (0, 21):
            problems.append(f"--- this script\n{script}--- should print\n{expected}--- printed\n{run.stdout}{run.stderr}")
    if len(scripts) != page.count("```dcs\n") or not library:
        problems.append("a script without its output, or no library")
    print("\n".join(problems) or f"{len(library)} functions, {len(scripts)} scripts")
    sys.exit(bool(problems))


if __name__ == "__main__":
    main()
