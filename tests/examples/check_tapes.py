#!/usr/bin/env python3
"""The examples on their tapes:  check_tapes.py [--windows] [--record] PROJECT_FOLDER COMMAND...

Each script of examples/ must print on its tape (examples/tapes/NAME.jsonl) what it prints on the simulated device
(EXPECTED/NAME.out). COMMAND runs a script. With --windows, scripts that ask their user are left out. --record records the
tapes anew.
"""

import pathlib
import re
import shlex
import shutil
import sys
import tempfile

tests = pathlib.Path(__file__).resolve().parent.parent
sys.path.append(str(tests))
import expect  # noqa: E402
import run_scripts  # noqa: E402


def run(script, folder, options):
    text = script.read_bytes()
    answers = "".join(line + "\n" for line in run_scripts.remark(text, b"answers", "").split("|"))
    options = shlex.split(run_scripts.remark(text, b"options", "")) + options
    return expect.run(command + [script.name, *options], folder, answers.encode())


def record(script, folder, tape):
    run(script, folder, ["--trace", str(tape)])
    # Of a local file, the name is all that counts.
    tape.write_text(re.sub(r'("path":")[^"]*\\', r"\1", tape.read_text()))


def main():
    problems, count = [], 0
    for script in sorted((root / "examples").glob("*.dcs")):
        if windows and run_scripts.remark(script.read_bytes(), b"answers", ""):
            continue
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch) / "examples"
            shutil.copytree(root / "examples", folder)
            shutil.copytree(root / "lib", folder.parent / "lib")
            tape = folder / "tapes" / f"{script.stem}.jsonl"
            if recording:
                tape.parent.mkdir(exist_ok=True)
                record(script, folder, tape)
                shutil.copy(tape, root / "examples/tapes")
            output, messages, code = run(script, folder, ["--channel", f"replay:{tape}"])
        expected = (root / "tests/examples" / f"{script.stem}.out").read_bytes()
        report = expect.differences(expected, output, messages, 0, code)
        count += 1
        if report:
            problems.append(f"{script.stem} on its tape:\n{report}")
    for problem in problems:
        print("FAILED", problem, end="\n\n")
    print(f"{count} tapes, {len(problems)} problems")
    sys.exit(1 if problems or not count else 0)


arguments = sys.argv[1:]
windows, recording = ("--windows" in arguments[:2], "--record" in arguments[:2])
root, *command = [argument for argument in arguments if argument not in ("--windows", "--record")]
root = pathlib.Path(root)
if __name__ == "__main__":
    main()
