#!/usr/bin/env python3
"""What a run says about a part: exit codes of verdicts, limits of time, several scripts in a call, the file of values."""

import json
import pathlib
import shutil
import signal
import time

from calls import Call, check, expect, name, run_checks, wait_for_file

root = pathlib.Path(__file__).resolve().parents[2]


def write(**scripts):
    for script, text in scripts.items():
        pathlib.Path(script + ".dcs").write_text(text)


def check_verdicts():
    write(good='print("a line\\n", "the ", "part ");print("is good");', bad='print("x\\nthe part is bad\\ny");n = 2;',
          fails='print("the part is bad\\n");n = 3;x();', returns='print("50 %\\rFAIL\\r\\nFAILED"); n = 0;', exits="n = 7;exit();")
    number = ["--set", "n:int32=0", "--result", "N"]
    text = ["--fail-on", "nothing of this", "--fail-on", "part is bad"]
    printed, bad = b"a line\nthe part is good", b"x\nthe part is bad\ny"
    failed = b"Unknown identifier near line 1/column 34 (offset 33) during parsing\n"
    for arguments, code, output, message in (
        (["good.dcs", *text], 0, printed, b""),
        (["good.dcs", "--fail-on", "part is good"], 10, printed, b'good.dcs: the part failed: it printed "the part is good"'),
        (["good.dcs", "--fail-on", "line\nthe"], 0, printed, b""),
        (["bad.dcs", *text, "--set", "n:dword=0"], 10, bad, b'bad.dcs: the part failed: it printed "the part is bad"'),
        (["bad.dcs", *number], 10, bad, b"bad.dcs: the part failed: N is not 0"),
        (["good.dcs", *number], 0, printed, b""),
        (["exits.dcs", *number], 10, b"", b"N is not 0"),
        (["good.dcs", "--set", "n:int64=-1", "--result", "n"], 10, printed, b"n is not 0"),
        (["returns.dcs", "--fail-on", "%F", *number], 0, b"50 %\rFAIL\r\nFAILED", b""),
        (["returns.dcs", "--fail-on", "FAILED", *number], 10, b"50 %\rFAIL\r\nFAILED", b'it printed "FAILED"'),
        # A run that failed says nothing about the part.
        (["fails.dcs", *text, *number], 21, failed, b"fails.dcs: the script failed"),
        (["none.dcs", *text, *number], 8, b"", b"none.dcs: the file cannot be opened"),
    ):
        expect(["run", *arguments], code, output, message)


MEASUREMENTS = {  # a line, and the code of a script that prints it
    "limit: supply = 3.312 V, 3.200 to 3.400 V: PASS": 0,
    "limit: supply = 3.312 V, 3.200 to 3.400 V: FAIL": 10,
    "limit: supply = 3.412 V, 3.200 to 3.400 V: PASS": 10,  # whoever printed that cannot count
    "limit: a = b = -0.5, -0.50 to 1: PASS": 0,
    "limit: a = -0.51, -0.5 to 1: PASS": 10,
    "limit: a = 0, -0.0 to 00: PASS": 0,
    "limit: a = 9223372036854775807, 1 to 9223372036854775806: PASS": 10,
    "limit: a = 5 m, s, at least 5 m, s: PASS": 0,
    "limit: a = 5 m, s, at least 6 m, s: PASS": 10,
    "limit: a = 5, at most 4.999: PASS": 10,
    "measuring limit: a = 5, at most 4: FAIL": 10,
    # no measurements
    "limit: a = 5 V, at most 4 A: FAIL": 0,
    "limit: a = five, at most 4: FAIL": 0,
    "limit: a = 5, up to 4: FAIL": 0,
    "limits: a = 5, at most 4: FAIL": 0,
    "limit: a = 5, at most 4: FAILED": 0,
}
LIMITS = r"""
func limit(var string name, var int64 value, var int64 low, var int64 high, var string unit) {
  limit = executesubscriptfunc("lib\\limit.dcs", "limit", name, value, low, high, unit);
}
print(limit("a", -5, -10, 10, "V/1000"), limit("b c", 3500, 3200, 3400, "V/1000"), limit("d", 5, 3, 9, ""), "\n");
print(executesubscriptfunc("lib\\limit.dcs", "atleast", "e", 5, 6, "m/s"), "\n");
print(executesubscriptfunc("lib\\limit.dcs", "atmost", "f", 12345678901234, 12345678901235, "Hz/10"), "\n");
print(limit("g", 100, 100, 100, "1/100x"), limit("h", -123, -123, 0, "A/100"), limit("i", 7, 0, 9, "/10"));
"""
LIMITS_OUTPUT = b"""limit: a = -0.005 V, -0.010 to 0.010 V: PASS
limit: b c = 3.500 V, 3.200 to 3.400 V: FAIL
limit: d = 5, 3 to 9: PASS
101
limit: e = 5 m/s, at least 6 m/s: FAIL
0
limit: f = 1234567890123.4 Hz, at most 1234567890123.5 Hz: PASS
1
limit: g = 100 1/100x, 100 to 100 1/100x: PASS
limit: h = -1.23 A, -1.23 to 0.00 A: PASS
limit: i = 0.7, 0.0 to 0.9: PASS
111"""


def check_measurements():
    for line, code in MEASUREMENTS.items():
        expect(["run", "-"], code, line.encode() + b"\n", b"the part failed: " if code else b"", f'print("{line}\\n");'.encode())
    shutil.copytree(root / "lib", "lib")
    write(limits=LIMITS)
    expect(["run", "limits.dcs"], 10, LIMITS_OUTPUT, b"the part failed: limit: b c = 3.500 V, 3.200 to 3.400 V: FAIL")


def check_timeout():
    write(forever="while (1) {}", busy="while (1) { n = n + 1; }", quick='print("q");')
    begun = time.monotonic()
    aborted = b"Processing aborted near line 1/column %d (offset %d) during executing\n"
    message = b"stopped, because it took longer than --timeout allows"
    expect(["run", "forever.dcs", "--timeout", "0.3"], 11, aborted % (10, 9), b"forever.dcs: " + message)
    expect(["run", "busy.dcs", "--timeout", "0.3", "--set", "n:dword=0"], 11, aborted % (22, 21), message)
    expect(["run", "forever.dcs", "quick.dcs", "--timeout", "0.3"], 11, aborted % (10, 9) + b"q", message)
    expect(["run", "quick.dcs", "--timeout", "30"], 0, b"q")
    check("a time-out comes in time", time.monotonic() - begun < 30, time.monotonic() - begun)


def check_several():
    """One call, one channel, the same variables for each; the code of the whole."""
    write(one='print("1", n);n = 5;', two='print("2", n);', bad='print("3", "FAIL\\n");', broken="x();", silent="var int32 i;")
    variable = ["--set", "n:dword=4"]
    expect(["run", "one.dcs", "two.dcs", *variable], 0, b"1424")
    expect(["run", "one.dcs", "-", *variable, "--get", "n"], 0, b"14\nn=5\nin\nn=4\n", text=b'print("in");')
    diagnostic = b"Unknown identifier near line 1/column 1 (offset 0) during parsing\n"
    fail_on = ["--fail-on", "FAIL", *variable]
    expect(["run", "bad.dcs", "one.dcs", *fail_on], 10, b"3FAIL\n14", b"bad.dcs: the part failed")
    expect(["run", "bad.dcs", "broken.dcs", "one.dcs", *fail_on], 21, b"3FAIL\n" + diagnostic + b"14", b"broken.dcs: the script failed")
    expect(["run", "none.dcs", "broken.dcs", *variable], 8, diagnostic, b"none.dcs: the file cannot be opened")
    expect(["run", "-", "-"], 2, message=b"FILE: standard input is one script only")
    # What a script does to the channel or to the screen concerns those behind it.
    expect(["run", "one.dcs", "two.dcs", "--channel", "tcp:127.0.0.1:1", *variable], 4, b"", b"tcp:127.0.0.1:1: ")
    if name == "ondscript":
        with open("/dev/full", "wb") as full:
            code, _, messages = Call(["run", "one.dcs", "two.dcs", "--get-file", "full.json", *variable], stdout=full).end()
        scripts = json.loads(pathlib.Path("full.json").read_text())["scripts"]
        check("a screen that is gone ends the call", code == 5 and [each["code"] for each in scripts] == [5, None], (code, scripts, messages))


def check_interrupt():
    """Whoever interrupts a call wants none of its scripts to go on."""
    pathlib.Path("waits.dcs").write_text('writestringtofile("waiting", "x"); while (1) {}')
    call = Call(["run", "waits.dcs", "one.dcs", "--set", "n:dword=4", "--get-file", "interrupted.json"])
    wait_for_file("waiting")
    call.process.send_signal(signal.SIGTERM)
    code, output, messages = call.end()
    scripts = json.loads(pathlib.Path("interrupted.json").read_text())["scripts"]
    check("an interrupt ends the call", code == 21 and output.startswith(b"Processing aborted") and b"stopped by SIGTERM" in messages
          and [(each["verdict"], each["code"]) for each in scripts] == [("not tested", 21), ("not run", None)], (code, output, messages, scripts))


def check_values():
    write(values='n = n - 1; u = u + 1; s = "\\"x\\\\\\r\\n\\0\\(xE4)end"; print("out");')
    given = ["--set", "n:int64=-9223372036854775807", "--set", "u:uint64=18446744073709551614", "--set", "s:string=", "--set", "w:int32=-3"]
    expect(["run", "values.dcs", *given, "--get-file", "all.json"], 0, b"out")
    all_values = {"n": -2 ** 63, "u": 2 ** 64 - 1, "s": '"x\\\r\n\0\xe4end', "w": -3}
    got = json.loads(pathlib.Path("all.json").read_bytes())
    check("all values as JSON", got == {"code": 0, "scripts": [{"script": "values.dcs", "verdict": "passed", "code": 0,
                                                                "values": all_values}]}, got)
    expect(["run", "values.dcs", *given, "--get", "w", "--get-file", "all.json", "--result", "w"], 10, b"out", b"w is not 0")
    got = json.loads(pathlib.Path("all.json").read_bytes())
    check("some values as JSON", got["code"] == 10 and got["scripts"][0]["values"] == {"w": -3}, got)
    check("nothing is left beside the file", not list(pathlib.Path(".").glob("*.new*")), list(pathlib.Path(".").iterdir()))


def check_wrong_calls():
    pathlib.Path("folder").mkdir()
    for arguments, message in (
        (["--fail-on", ""], b"--fail-on: the text is empty"),
        (["--result", "n"], b"--result n: no --set gives this variable"),
        (["--set", "s:string=", "--result", "s"], b"--result s: the variable must be a number"),
        (["--timeout", "0"], b"--timeout 0: expected seconds, 0.001 to 1000000"),
        (["--timeout", "1s"], b"--timeout 1s: expected seconds"),
        (["--timeout", "inf"], b"--timeout inf: expected seconds"),
        (["--get-file", "none/x.json"], b"--get-file none/x.json: the file cannot be written"),
        (["--get-file", "folder"], b"--get-file folder: the file cannot be written"),
        (["--report", "html"], b"--report html: expected FORMAT=FILE, as in html=report.html"),
        (["--report", "pdf=x"], b'--report pdf=x: unknown format "pdf"; there are junit, jsonl, tap, html'),
        (["--report", "tap=none/x"], b"--report tap=none/x: the file cannot be written"),
    ):
        expect(["run", "a.dcs", *arguments], 2, message=message)


run_checks(check_verdicts, check_measurements, check_timeout, check_several,
           *([check_interrupt] if name == "ondscript" else []), check_values, check_wrong_calls)
