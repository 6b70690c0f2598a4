#!/usr/bin/env python3
"""The built-in functions are those of the language page:  check_builtins.py PROJECT_FOLDER RUN_EACH

The page names every built-in of the table in scriptrt/builtin/BuiltIns.cpp and no other. Each takes as many arguments as its
signature there shows, of the types that the parameters' names tell, and refuses every other number and type.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

# Parameters that are strings; one that is called `confirmed` is any variable, the others are numbers.
STRINGS = {"s", "searched", "file", "text", "data", "function", "caption", "prompt", "items"}
# What stands for an argument of each type. The script declares `f` and `v`; "1" is a number as a text, too.
ARGUMENTS = {"string": '"1"', "number": "1", "variable": "&v", "function": "&f"}
COUNT_ERROR = "Wrong number of parameters"
TYPE_ERROR = "Type error"


class Signature:
    def __init__(self, name, parameters):
        self.name = name
        self.more = "…" in parameters  # any further arguments
        self.types = []
        self.counts = set()
        for group in parameters.replace("]", "").split("["):  # each bracket begins what may be left out
            for parameter in re.findall(r"\w+", group):
                self.types.append(self.type_of(parameter))
            self.counts.add(len(self.types))

    def type_of(self, parameter):
        if parameter == "confirmed":
            return "variable"
        is_string = parameter in STRINGS or (self.name, parameter) == ("userinputstring", "default")
        return "string" if is_string else "number"

    def calls(self):
        """(arguments, the error that they are to give or None)"""
        for count in range(len(self.types) + 3):
            types = (self.types + ["number", "string"])[:count]
            if count not in self.counts and not (self.more and count >= len(self.types)):
                yield types, COUNT_ERROR
                continue
            yield types, None
            for place, right in enumerate(self.types[:count]):
                for wrong in {"string", "number", "function"} - {right}:
                    if wrong == "function" or right != "variable":
                        yield types[:place] + [wrong] + types[place + 1:], TYPE_ERROR


def read_signatures(page):
    section = page[page.index("\n## Names that are there from the start"):page.index("\n## Errors")]
    signatures = [Signature(*each) for each in re.findall(r"^`(\w+)\((.*?)\)`", section, re.MULTILINE)]
    for cell in re.findall(r"^\| (`.+?) \| ", section, re.MULTILINE):
        shown = re.findall(r"`(\w+)(?:\((.*?)\))?`", cell)
        # A name without parameters is another one for the function in front of it.
        signatures += [Signature(name, parameters if f"`{name}(" in cell else shown[0][1]) for name, parameters in shown]
    return signatures


def check_names(root, signatures):
    source = (root / "scriptrt/builtin/BuiltIns.cpp").read_text()
    table = re.findall(r'^    {"(\w+)",', source, re.MULTILINE)
    if not table:
        yield "BuiltIns.cpp: there is no table"
    documented = [signature.name for signature in signatures]
    for name in set(table) - set(documented):
        yield f"docs/language.md does not name {name}"
    for name in set(documented) - set(table):
        yield f"docs/language.md names {name}, which is not there"
    for name in {name for name in documented if documented.count(name) > 1}:
        yield f"docs/language.md shows {name} twice"


def check_calls(run_each, signatures):
    calls = [(signature.name, *call) for signature in signatures for call in signature.calls()]
    scripts = [f"func f() {{ }} var dword v; v = 1; {name}({', '.join(ARGUMENTS[each] for each in types)});"
               for name, types, error in calls]
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run([run_each], input="".join(script + "\0" for script in scripts), cwd=folder,
                             capture_output=True, text=True, timeout=60)
    outputs = run.stdout.split("\0")[:-1]
    if len(outputs) != len(scripts) or run.returncode != 0:
        yield f"{run_each} ended early: {run.stderr}"
    for (_, _, error), script, output in zip(calls, scripts, outputs):
        if [each for each in (COUNT_ERROR, TYPE_ERROR) if each in output] != ([error] if error else []):
            yield f"{script}\n  should give: {error or 'neither error'}\n  gave: {output.strip() or 'nothing'}"


def main():
    root, run_each = pathlib.Path(sys.argv[1]), os.path.abspath(sys.argv[2])
    signatures = read_signatures((root / "docs/language.md").read_text())
    problems = [*check_names(root, signatures)] or [*check_calls(run_each, signatures)]
    print("\n".join(problems) or f"{len(signatures)} built-ins are as the page shows them")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
