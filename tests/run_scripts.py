#!/usr/bin/env python3
"""Runs scripts and compares what they print:  run_scripts.py [--accept] [--windows] [--lib FOLDER] SCRIPTS EXPECTED SCRATCH -- COMMAND...

For each SCRIPTS/NAME.dcs, `COMMAND NAME.dcs [options]` must print EXPECTED/NAME.out byte for byte. Comments in the script say the rest:

    # exit: 21                      the exit code, 0 when nothing is said
    # options: --set n:int32=3      further options of the command
    # answers: 5||yes               what the user answers on the terminal, a line each; left out with --windows, where
                                    questions are windows, which tests/windows answers

Scripts in a folder `lib` are for other scripts and are not run themselves. All work on a copy in SCRATCH, so that a script
may write files; --lib puts a copy of that folder beside SCRATCH, as `lib`. --accept writes the .out files anew from what was printed; look at the difference before committing it.
"""

import argparse
import os
import pathlib
import re
import shlex
import shutil
import sys

import expect


def remark(script, name, default):
    found = re.search(rb"^# *" + name + rb": *(.*?) *\r?$", script, re.MULTILINE)
    return found.group(1).decode() if found else default


def check(script, expected_file, command, accept):
    """The differences of one script, as text."""
    text = script.read_bytes()
    options = shlex.split(remark(text, b"options", ""))
    answers = "".join(line + "\n" for line in remark(text, b"answers", "").split("|"))
    output, messages, code = expect.run(command + [script.name] + options, script.parent, answers.encode())
    if accept:
        expected_file.parent.mkdir(parents=True, exist_ok=True)
        expected_file.write_bytes(output)
    if not expected_file.exists():
        return f"there is no {expected_file}; it printed:\n" + "\n".join(expect.lines(output))
    expected_code = int(remark(text, b"exit", "0"))
    return expect.differences(expected_file.read_bytes(), output, messages, expected_code, code)


def main():
    split = sys.argv.index("--")
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--accept", action="store_true")
    parser.add_argument("--windows", action="store_true")
    parser.add_argument("--lib", type=pathlib.Path)
    parser.add_argument("scripts", type=pathlib.Path)
    parser.add_argument("expected", type=pathlib.Path)
    parser.add_argument("scratch", type=pathlib.Path)
    options = parser.parse_args(sys.argv[1:split])
    if options.windows:
        # Shown when a script fails: how far its program came, and whether Wine ended it. An exit code that Windows knows and
        # Linux does not (a multiple of 256) reaches us as 1.
        os.environ.setdefault("WINEDEBUG", "err+all,+seh,+process,+loaddll,+pid")
    # Programs are named from here, and started in the scripts' folders.
    command = [str(pathlib.Path(part).resolve()) if "/" in part else part
               for part in sys.argv[split + 1:]]

    shutil.rmtree(options.scratch, ignore_errors=True)
    shutil.copytree(options.scripts, options.scratch)
    if options.lib:
        shutil.copytree(options.lib, options.scratch.parent / "lib", dirs_exist_ok=True)
    names = sorted(path.relative_to(options.scratch) for path in options.scratch.rglob("*.dcs"))
    names = [name for name in names if "lib" not in name.parts]
    known = {name.with_suffix(".out") for name in names}
    failed = [f"{path}: there is no script of this name" for path in options.expected.rglob("*.out")
              if path.relative_to(options.expected) not in known]
    for name in names:
        if options.windows and remark((options.scratch / name).read_bytes(), b"answers", ""):
            continue
        report = check(options.scratch / name, options.expected / name.with_suffix(".out"), command, options.accept)
        if report:
            failed.append(f"{name}\n{report}")
    for report in failed:
        print("FAILED", report, end="\n\n")
    print(f"{len(names)} scripts, {len(failed)} failed")
    sys.exit(1 if failed or not names else 0)


if __name__ == "__main__":
    main()
