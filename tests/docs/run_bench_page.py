#!/usr/bin/env python3
"""Takes the tour of docs/bench.md:  run_bench_page.py PROJECT_FOLDER ONDSCRIPT [--show]

Each file is saved under the name that stands in the line above it, and each block of shell prints the block of text behind it, but
for times; one without prints nothing. A socat plays a device until the end. --show prints the page as it is now.
"""

import contextlib
import difflib
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "channels"))
import peers  # noqa: E402

SAVE = re.compile(r"`([\w.]+)`[^`\n]*:\n\Z")
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```\n(\n```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


def timeless(text):
    text = re.sub(r"\d{4}-\d\d-\d\dT[\d:.]+Z", "DATE", text)
    text = re.sub(r"^ +\+?\d+\.\d{6}", "TIME", text, flags=re.MULTILINE)
    return re.sub(r'\d+\.\d{3} s|cpu "\d+"|time="[\d.]+"', "TIME", text)


class Tour:
    def __init__(self, root, ondscript, scratch, stack):
        shutil.copytree(root / "lib", scratch / "lib")
        self.stack, self.folder = stack, scratch
        self.environment = {**os.environ, "PATH": f"{ondscript.parent}:{os.environ['PATH']}"}

    def run(self, shell):
        if shell.startswith("socat"):
            arguments = [part.replace("link=", f"link={self.folder}/") for part in shlex.split(shell)[1:]]
            self.stack.enter_context(peers.serial_port(self.folder, *arguments))
            return ""
        done = subprocess.run(["sh", "-c", shell], cwd=self.folder, env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, text=True, timeout=120, check=False)
        return re.sub(r"^Running as user .*\n", "", done.stdout)  # the analyser, when the tests run as root

    def follow(self, page):
        """The page with what its commands print now."""
        place, result = 0, []
        for block in BLOCK.finditer(page):
            above = page[place:block.start()].rstrip("\n") + "\n"
            result.append(page[place:block.start()])
            place = block.end()
            language, text, _, shown = block.groups()
            if language != "sh":
                name = SAVE.search(above)
                if name:
                    (self.folder / name[1]).write_text(text)
                result.append(block[0])
                continue
            printed = self.run(text)
            if text.startswith("mkdir"):
                self.folder = self.folder / "tour"
            if timeless(printed) == timeless(shown or ""):
                result.append(block[0])
            else:
                result.append(f"```sh\n{text}```\n" + (f"\n```text\n{printed}```\n" if printed else ""))
        return "".join(result) + page[place:]


def main():
    root, ondscript = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    page = (root / "docs/bench.md").read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory() as scratch, contextlib.ExitStack() as stack:
        now = Tour(root, ondscript, pathlib.Path(scratch), stack).follow(page)
    if "--show" in sys.argv:
        print(now, end="")
        return
    difference = list(difflib.unified_diff(page.splitlines(), now.splitlines(), "the page", "what happens", lineterm=""))
    print("\n".join(difference) or "the tour is as described")
    sys.exit(bool(difference) or "```sh" not in page)


if __name__ == "__main__":
    main()
