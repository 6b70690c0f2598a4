#!/usr/bin/env python3
"""Makes the mistakes of mistakes.txt and compares what is said about them:

    check_messages.py NAME COMMAND...             NAME is ondscript or ondhost, COMMAND what starts it
    check_messages.py --accept ondscript COMMAND  writes the file anew from what is said now

ondhost has no `check`, and of what only the engine knows (calls of functions, values) it tells less.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

TABLE = pathlib.Path(__file__).with_name("mistakes.txt")
PAGE = pathlib.Path(__file__).parents[2] / "docs" / "messages.md"
TIMEOUT = 60


def read_sections(text):
    """The remarks in front, and [title, script, messages] of each section."""
    head, *sections = re.split(r"^== ", text, flags=re.MULTILINE)
    return head, [list(re.fullmatch(r"(.*)\n([\s\S]*?)^--\n([\s\S]*?)\n*", each, re.MULTILINE).groups()) for each in sections]


def is_run(title):
    return title.startswith("run: ")


def messages_about(command, folder, title, script):
    (folder / "mistake.dcs").write_text(script, encoding="utf-8")
    call = [*command, "run" if is_run(title) else "check", "mistake.dcs"]
    done = subprocess.run(call, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=TIMEOUT)
    said = done.stderr if is_run(title) else done.stdout
    return done.returncode, said.decode("utf-8", "replace").replace("\r\n", "\n").rstrip("\n")


def cell(text):
    return text.replace("|", "\\|")


def page_rows(sections):
    """A row for each section: what it is, the first message without its place, what leads to the fix."""
    yield "| mistake | message | what to do |"
    yield "|---|---|---|"
    for title, _, said in sections:
        message = re.search(r": error: (.*)", said) or re.search("(.*)", said)
        hint = re.search(r"^      = (.*)", said, re.MULTILINE)
        yield f"| {cell(title.removeprefix('run: '))} | {cell(message.group(1))} | {cell(hint.group(1)) if hint else ''} |"


def page_with_table(page, sections):
    """The page's table of mistakes, which is the last thing on it, made anew."""
    front = page[:page.find("\n|") + 1] if "\n|" in page else page + "\n"
    return front + "\n".join(page_rows(sections)) + "\n"


def check_page(command, folder, page):
    """The examples of the page: each script is followed by what is said about it."""
    failures = 0
    for script, said in re.findall(r"```dcs\n([\s\S]*?)```\n\n```text\n([\s\S]*?)```", page):
        name = said[:said.index(":")]
        (folder / name).write_text(script)
        for what, stream in (("check", "stdout"), ("run", "stderr")):
            done = subprocess.run([*command, what, name], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=TIMEOUT)
            if getattr(done, stream).decode() == said:
                break
        else:
            print(f"{PAGE.name}: {name} is told otherwise\n{done.stderr.decode()}")
            failures += 1
    return failures


def main():
    accepts = "--accept" in sys.argv
    name, *command = [each for each in sys.argv[1:] if each != "--accept"]
    head, sections = read_sections(TABLE.read_text(encoding="utf-8"))
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for section in sections:
            title, script, expected = section
            if name == "ondhost" and not is_run(title):
                continue
            code, said = messages_about(command, pathlib.Path(folder), title, script)
            said = said.replace(f"{name}: ", "PROGRAM: ")
            if code != (21 if is_run(title) else 1):
                print(f"{title}: exit code {code}\n{said}")
                failures += 1
            elif accepts:
                section[2] = said
            elif said != expected.rstrip("\n"):
                print(f"{title}: is said\n{said}\n-- instead of\n{expected}")
                failures += 1
        if name == "ondscript":
            failures += check_page(command, pathlib.Path(folder), PAGE.read_text(encoding="utf-8"))
    page = page_with_table(PAGE.read_text(encoding="utf-8"), sections)
    if accepts:
        PAGE.write_text(page, encoding="utf-8")
        TABLE.write_text(head + "\n".join(f"== {title}\n{script}--\n{said}\n" for title, script, said in sections), encoding="utf-8")
    elif page != PAGE.read_text(encoding="utf-8"):
        print(f"{PAGE.name}: its table does not agree with {TABLE.name}")
        failures += 1
    print(f"{len(sections)} mistakes, {failures} failures")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
