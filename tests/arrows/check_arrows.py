#!/usr/bin/env python3
"""Holds every #include against the table of folders in docs/architecture.md:  check_arrows.py PROJECT_FOLDER

A row names folders and, in its last column, the folders that their files may include. A folder stands for its own files, not
for the folders in it. "the system" allows headers of the operating system, "anything" whatever there is, in the folders below
too. The table itself has no circle, so the includes have none.
"""

import pathlib
import re
import sys
import tempfile

PAGE = "docs/architecture.md"
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
SKIPPED = {"build", ".git"}


def folders_in(cell):
    return [name.rstrip("/") for name in re.findall(r"`([^`]+/)`", cell)]


def read_table(page):
    """{folder: what it may include}, in the order of the rows, and the folders that may include anything."""
    table, free = {}, set()
    for row in re.findall(r"^\| (.+) \| .+ \| (.+) \|$", page, re.MULTILINE):
        for folder in folders_in(row[0]):
            table[folder] = set(folders_in(row[1])) | {word for word in ("the system",) if word in row[1]}
            if row[1] == "anything":
                free.add(folder)
    return table, free


def is_within(folder, folders):
    return any(folder == each or folder.startswith(each + "/") for each in folders)


def is_of_the_system(header):
    return header.endswith(".h") and not header.startswith(("ond/", "rapidjson/"))  # those of C++ and of libraries end otherwise


def sources(root):
    for path in sorted(root.rglob("*")):
        inside = path.relative_to(root)
        if path.suffix in (".h", ".cpp") and not SKIPPED & set(inside.parts):
            yield inside, path


def check_includes(root, table, free):
    for inside, path in sources(root):
        folder = inside.parent.as_posix()
        if is_within(folder, free):
            continue
        if folder not in table:
            yield f"{inside}: the table in {PAGE} does not know {folder}/"
            continue
        for bracket, header in INCLUDE.findall(path.read_text(errors="replace")):
            if bracket == "<":
                wanted = "the system" if is_of_the_system(header) else folder
            else:
                wanted = pathlib.PurePosixPath(header).parent.as_posix()
            if wanted != folder and wanted not in table[folder]:
                yield f"{inside}: includes {header}, but {folder}/ may not use {wanted}"


def check_rows(root, table):
    for folder in table:
        if not (root / folder).is_dir():
            yield f"{PAGE}: there is no folder {folder}/"


def find_circle(table):
    """Folders that lead back to the first of them, or nothing."""
    done = set()

    def visit(folder, path):
        if folder in path:
            return path[path.index(folder):] + [folder]
        if folder in done:
            return []
        for each in sorted(table.get(folder, ())):
            circle = visit(each, path + [folder])
            if circle:
                return circle
        done.add(folder)
        return []

    for folder in table:
        circle = visit(folder, [])
        if circle:
            return circle
    return []


def check(root):
    table, free = read_table((root / PAGE).read_text())
    if len(table) < 2:
        yield f"{PAGE}: there is no table of folders"
    yield from check_rows(root, table)
    yield from check_includes(root, table, free)
    circle = find_circle(table)
    if circle:
        yield f"{PAGE}: a circle of folders: {' -> '.join(circle)}"


def check_itself(page):
    """An include upwards, a folder without a row and a circle must be found."""
    with tempfile.TemporaryDirectory() as name:
        root = pathlib.Path(name)
        for file, text in {
            PAGE: page.replace("| `res/` |", "| `res/`, `new/` |"),
            "util/Wrong.h": '#include "script/Any.h"\n#include <windows.h>\n',
            "util/deeper/Wrong.cpp": "",
            "util/Right.h": '#include "platform/Any.h"\n#include <vector>\n',
        }.items():
            (root / file).parent.mkdir(parents=True, exist_ok=True)
            (root / file).write_text(text)
        found = "\n".join(check(root))
        for wanted in ("util/ may not use script", "util/ may not use the system", "not know util/deeper/", "no folder new/"):
            if found.count(wanted) != 1:
                yield f"check_arrows.py: does not find: {wanted}"
        if "Right.h" in found:
            yield "check_arrows.py: finds what is right"
    if find_circle({"a": {"b"}, "b": {"c"}, "c": {"a"}}) != ["a", "b", "c", "a"]:
        yield "check_arrows.py: does not find a circle"


def main():
    root = pathlib.Path(sys.argv[1])
    problems = [*check(root), *check_itself((root / PAGE).read_text())]
    print("\n".join(problems) or "every include points downwards")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
