#!/usr/bin/env python3
"""Runs a program and compares what it prints:  expect.py EXPECTED_FILE COMMAND...

Fails when standard output or the exit code (0) differ, or when the program does not end in time. Windows programs may end
their lines in CR LF. run_scripts.py uses the same for many scripts, byte for byte.
"""

import difflib
import pathlib
import subprocess
import sys
import tempfile

TIMEOUT = 120  # seconds


def run(command, folder=None, text=b""):
    """Standard output, standard error and exit code of a command that reads `text`; what hangs is killed and has a text for a
    code."""
    # Messages go through a file: Wine's desktop, which the first program with a window starts, keeps that stream open.
    with tempfile.TemporaryFile() as messages:
        try:
            process = subprocess.run(command, cwd=folder, input=text, stdout=subprocess.PIPE,
                                     stderr=messages, timeout=TIMEOUT, check=False)
            output, code = process.stdout, process.returncode
        except subprocess.TimeoutExpired as expired:
            output, code = expired.stdout or b"", f"killed after {TIMEOUT} s"
        messages.seek(0)
        return output, messages.read(), code


def lines(data):
    """Lines for a reader: bytes that are not plain text as escapes, a missing last line end told."""
    text = [line.decode("latin-1").encode("unicode_escape").decode() for line in data.split(b"\n")]
    if text[-1]:
        text[-1] += "  <no line end>"
    else:
        text.pop()
    return text


def differences(expected, output, messages, expected_code, code):
    """A report as text, empty when everything is as expected."""
    report = []
    if output != expected:
        report += difflib.unified_diff(lines(expected), lines(output), "expected output", "output", lineterm="")
    if code != expected_code:
        report.append(f"exit code: expected {expected_code}, got {code}")
    if report and messages:
        report += ["standard error:"] + ["  " + line for line in lines(messages)]
    return "\n".join(report)


def main():
    expected_file, *command = sys.argv[1:]
    output, messages, code = run(command)
    expected = pathlib.Path(expected_file).read_bytes()
    report = differences(expected, output.replace(b"\r\n", b"\n"), messages, 0, code)
    if report:
        print(report)
        sys.exit(1)


if __name__ == "__main__":
    main()
