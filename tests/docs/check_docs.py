#!/usr/bin/env python3
"""What the documentation shows is what there is:  check_docs.py PROJECT_FOLDER ONDSCRIPT

The picture of a run in README.md is the output of examples/hello.dcs, the code of docs/host-guide.md stands in the host that
the tests build, links lead to files of the project and to headings of its pages, and docs/channels.md names the kinds of
channels, their options, operations and codes that there are.
"""

import pathlib
import re
import subprocess
import sys


def blocks(text, language):
    return re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)


def check_run(root):
    output = (root / "tests/examples/hello.out").read_text()
    if f"$ ./run\n{output}" not in blocks((root / "README.md").read_text(), "text"):
        yield "README.md: the run shown is not what examples/hello.dcs prints (tests/examples/hello.out)"


def check_code(root):
    def plain(code):
        return " ".join(code.split())

    sources = [plain(path.read_text()) for path in (root / "examples/host").iterdir()]
    page = (root / "docs/host-guide.md").read_text()
    code = blocks(page, "cpp"), blocks(page, "cmake")
    if not all(code):
        yield "docs/host-guide.md: there is no code"
    for block in sum(code, []):
        # An ellipsis stands for what the text leaves out.
        for part in block.split("…"):
            if not any(plain(part) in source for source in sources):
                yield f"docs/host-guide.md: this is not in examples/host:\n{part}"


def anchors(page):
    """What a heading is called behind the # of a link."""
    text = re.sub(r"^```.*?^```$", "", page.read_text(), flags=re.MULTILINE | re.DOTALL)
    for heading in re.findall(r"^#+ +(.*)$", text, re.MULTILINE):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def check_links(root):
    for page in [root / "README.md", *root.glob("*/**/*.md")]:
        if "build" in page.relative_to(root).parts:
            continue
        for target, anchor in re.findall(r"\]\(([^)#:]*)(?:#([^)]*))?\)", page.read_text()):
            lead = page.parent / target if target else page
            if not lead.exists():
                yield f"{page.relative_to(root)}: link to {target}, which is not there"
            elif anchor and anchor not in anchors(lead):
                yield f"{page.relative_to(root)}: link to {target}#{anchor}; {lead.name} has no such heading"


def check_channels(root, ondscript):
    def known(option, text):
        """What the program offers instead of a wrong value."""
        run = subprocess.run([ondscript, "run", "-", option, text], capture_output=True, text=True, timeout=60)
        return re.split(", ", re.search(r"there are:? (.*)$", run.stderr, re.MULTILINE)[1])

    page = (root / "docs/channels.md").read_text()
    kinds_table, options_table = page.split("\n## Options of lines\n")
    kinds = re.findall(r"^\| `([^`]+)` \|", kinds_table, re.MULTILINE)
    options = re.findall(r"^\| `(\w+)", options_table, re.MULTILINE)
    operations = re.findall(r"`(\w+)`", re.search(r"The operations are (.*?)\. ", page, re.DOTALL)[1])
    codes = re.findall(r"^\| (\d+) \| ([^;|]+?)(?:;.*)? \|$", page, re.MULTILINE)
    source = (root / "host/channel/ChannelErrors").with_suffix
    numbers = dict(re.findall(r"(k\w+) = (\d+),", source(".h").read_text()))
    texts = re.findall(r'case (k\w+):\s+return "(.*?)";', source(".cpp").read_text())
    for name, shown, wanted in (
        ("kinds", kinds, known("--channel", "?")),
        ("options", options, [form.split("=")[0] for form in known("--channel", "serial:PORT:9600,?")]),
        ("operations", operations, known("--fault", "?=1")),
        ("codes", codes, [(numbers[code], text) for code, text in texts]),
    ):
        if shown != wanted:
            yield f"docs/channels.md: the {name} are {wanted}, not {shown}"


def main():
    root = pathlib.Path(sys.argv[1])
    problems = [*check_run(root), *check_code(root), *check_links(root), *check_channels(root, sys.argv[2])]
    print("\n".join(problems) or "the documentation agrees with the project")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
