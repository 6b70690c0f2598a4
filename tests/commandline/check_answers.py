#!/usr/bin/env python3
"""Answers from a file to a script's questions, through the terminal's prompter and through the module's windows; runs that find
nobody to ask.
"""

import json
import os
import pathlib
import time

from calls import TIMEOUT, Call, check, command, expect, name, run_checks

ASKS = r"""var dword ok;
print(userinputdword("Limits", "How many", 50, 10, 20), "|", userinputint32("Limits", "How many", -3, -5, 5, &ok), ok, "|");
print(userinputstring("Name", "Who", "nobody"), "|", userinputstring("Name", "Who", "nobody"), "|");
messagebox("Ready = 1", "Go on");
print(userlistinput("Colour", "Which", "red\0blue\02\0", 1, &ok), userlistinput("Colour", "Which", "red\0blue\02\0", 1, &ok),
  userlistinput("Colour", "Which", "red\0blue\02\0", 1, &ok), "|", userinputuint64("Name", "A number", 7, 1, 9, &ok), ok, "\n");
"""
ANSWERS = """\ufeff# What the user answers
Limits = 12
Limits=<Default>
Name =   Anna = A #1
   Name = " <cancel> "

"Ready = 1" = ok
Colour (always) = "2"
Name = <cancel>
"""
OUTPUT = b"12|-31|Anna = A #1| <cancel> |222|70\n"


def answers(text=ANSWERS):
    pathlib.Path("answers.txt").write_bytes(text.replace("\n", "\r\n").encode())
    return ["run", "asks.dcs", "--answers", "answers.txt"]


def check_answers():
    pathlib.Path("asks.dcs").write_text(ASKS)
    expect(answers(ANSWERS + "Nobody = asks\n"), 0, OUTPUT, b"answers.txt:10: no script asked for this answer")
    expect(answers() + ["--report", "jsonl=report.jsonl", "--trace", "trace.jsonl"], 0, OUTPUT)
    records = [json.loads(line) for line in pathlib.Path("report.jsonl").read_text().splitlines()]
    questions = [record for record in records if record["record"] == "question"]
    got = [(record["caption"], record["prompt"], record["answer"], record["by"].rpartition(":")[2]) for record in questions]
    expected = [("Limits", "How many", "12", "2"), ("Limits", "How many", "-3", "3"), ("Name", "Who", "Anna = A #1", "4"),
                ("Name", "Who", " <cancel> ", "5"), ("Ready = 1", "Go on", "OK", "7"), ("Colour", "Which", "2", "8"),
                ("Colour", "Which", "2", "8"), ("Colour", "Which", "2", "8"), ("Name", "A number", None, "9")]
    check("questions and answers in the report", got == expected, got)
    events = [json.loads(line) for line in pathlib.Path("trace.jsonl").read_text().splitlines() if '"event":"question"' in line]
    got = [(event["caption"], event["prompt"], event.get("answer"), event["by"].rpartition(":")[2]) for event in events]
    check("questions and answers in the trace", got == expected and events == sorted(events, key=lambda event: event["t"]), got)


def check_refused():
    """The window decides; whatever does not fit ends the run, and reaches no device."""
    for change, message in (
        (("12", "9"), b'answers.txt:2: "Limits"%s: Value must be >= 10'),
        (("12", "21"), b'answers.txt:2: "Limits"%s: Value must be <= 20'),
        (("12", "many"), b'answers.txt:2: "Limits"%s: "many" is not a number'),
        (('"2"', "Green"), b'answers.txt:8: "Colour" (one of red, blue, 2): Green is neither the number nor the text of an item'),
        (("= ok", "= <cancel>"), b'answers.txt:7: "Ready = 1" (a box: OK): a box takes nothing but OK'),
        (("= ok", "= yes"), b'answers.txt:7: "Ready = 1" (a box: OK): a box takes nothing but OK'),
        (("Limits=<Default>", ""), b'answers.txt: no further answer to "Limits"%s, which has 1'),
        (('"Ready = 1"', "Ready"), b'answers.txt: no answer to "Ready = 1" (a box: OK)'),
    ):
        limits = b"-5 to 5" if b"further" in message else b"10 to 20"
        told = b"" if name == "ondhost" else b" (a number, " + limits + b")"
        message = message.replace(b"%s", told)
        code, _, messages = Call(answers(ANSWERS.replace(*change))).end()
        check(f"{change} is refused", code == 12 and b"asks.dcs: stopped: " + message in messages, f"{code} {messages}, expected {message}")
    pathlib.Path("sends.dcs").write_text('messagebox("A", "b"); print(transmitfilefromstring("x", 1, 1, 0, 1)); while (1) { print("never"); }')
    code, output, messages = Call(["run", "sends.dcs", "--answers", "answers.txt", "--device-dir", "device"]).end()
    sent = list(pathlib.Path("device").glob("*1*"))
    check("nothing reaches the device", code == 12 and not sent, (code, output, messages, sent))


def check_mistakes():
    for text, message in (
        ("A\n", b"1: expected CAPTION = ANSWER"),
        ("\n#\n = 3\n", b"3: expected CAPTION = ANSWER"),
        ('"A = 3\n', b"1: expected CAPTION = ANSWER"),
        ("A = \n", b'1: the answer is missing: "" is the empty text'),
        ("A = <yes>\n", b"1: there is no <yes>, only <cancel> and <default>"),
        ('A = "x\n', b"1: the closing quotation mark is missing"),
        ("B = 1\nA (always) = 1\nA = 2\n", b"3: line 2 answers every further question of this caption already"),
        ("A = 1\0\n", b'1: this is no plain text (is it saved as "Unicode"?)'),
    ):
        expect(answers(text), 2, message=b"--answers answers.txt:" + message)
    expect(["run", "asks.dcs", "--answers", "none.txt"], 2, message=b"--answers none.txt: the file cannot be read")


def check_nobody():
    """No terminal, no answers: the run ends, and what was documented before stays: a run that is stopped exits with 21."""
    pathlib.Path("box.dcs").write_text('print("a"); messagebox("Ready", "Go on"); print("b"); while (1) { print("c"); }')
    begun = time.monotonic()
    code, output, messages = Call(["run", "box.dcs"]).end()
    told = (b'box.dcs: stopped: nobody is there to answer "Ready" (a box: OK): no terminal, nothing on standard input; '
            b"--answers FILE gives the answers")
    check("a run that nobody answers ends", code == 21 and output.startswith(b"abProcessing aborted") and told in messages,
          (code, output, messages))
    check("at once", time.monotonic() - begun < TIMEOUT / 2, time.monotonic() - begun)
    pathlib.Path("ends.dcs").write_text('messagebox("Ready", "Go on");')
    code, _, messages = Call(["run", "ends.dcs"]).end()
    check("also when the script is over then", code == 21 and b"nobody is there" in messages, (code, messages))


def check_no_display():
    """Windows that cannot be shown ask nobody, and a file's answers do not reach them."""
    pathlib.Path("box.dcs").write_text('print(userinputdword("Limits", "How many", 12)); while (1) { print("c"); }')
    answers("Limits = 13\n")
    for arguments in ([], ["--answers", "answers.txt"]):
        code, output, messages = Call(["run", "box.dcs", *arguments], start=["env", "-u", "DISPLAY", *command]).end()
        check("without a display", code == 21 and b"box.dcs: stopped: nobody is there to answer: no window can be"
              b" shown here" in messages, (code, output, messages))


def check_timeout():
    """A question that stays open; whoever comes next can be asked again."""
    pathlib.Path("waits.dcs").write_text('print(userinputstring("Name", "Who", "nobody"));')
    reading, writing = os.pipe()
    call = Call(["run", "waits.dcs", "waits.dcs", "--timeout", "2"], stdin=reading)
    code, output, messages = call.end()
    os.close(writing)
    check("a question that nobody answers in time", code == 11 and output == b"nobodynobody" and messages.count(b"longer than") == 2,
          (code, output, messages))


if name == "ondscript":
    run_checks(check_answers, check_refused, check_mistakes, check_nobody, check_timeout)
else:
    run_checks(check_answers, check_refused, check_mistakes, check_no_display, check_timeout)
