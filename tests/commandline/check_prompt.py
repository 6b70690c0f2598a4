#!/usr/bin/env python3
"""What is typed at ondscript's prompt and what it shows: from a pipe, and at a terminal."""

import os
import pathlib
import signal

from calls import Call, Terminal, check, expect, is_native, run_checks

# What is typed, and what shows before the next line is asked for.
SESSION = (
    ("1 + 1", "2"),
    ('"a" + "\\"b\\"\\r\\n"', '"a\\"b\\"\\r\\n"'),
    ('print("no end")', "no end"),
    ("var int32 n", ""),
    ("n = 5", ""),
    ("n; # a statement, which it is not", "  n; # a statement, which it is not\n   ^ Unexpected token"),
    ("n # a remark", "5"),
    ("N *", ""), ("(n -", ""), ("1)", "20"),
    # Blocks and functions go on.
    ("if (n == 5) {", ""), ('  print("five\\n");', ""), ("}", "five"),
    ("func twice(var int32 x) {", ""), ("  twice = x * 2;", ""), ("}", ""),
    ("twice(n)", "10"),
    ("func both() { both = twice(n) + n; } print(both());", "15"),
    # A definition replaces the one before it, for its callers too.
    ("func twice(var int32 x) { twice = 100 * x; }", ""),
    ("both()", "505"),
    ("func later() { later = 1; } func both() { both = later(); }", ""),
    ("both()", "1"),
    ("var string twice; var dword free;", ""),
    ("twice = \"text\"; free = 7;", ""),
    ("twice + \"s\"", '"texts"'),
    ("var string later;", "both, line 1: Syntax error, with what is typed now"),
    ("later()", "1"),
    # Mistakes lose nothing.
    ("n = foo", "  n = foo\n      ^ Unknown identifier"),
    ("}", "  }\n  ^ Unexpected token"),
    ("n = 1; } n = 2;", "  n = 1; } n = 2;\n         ^ Unexpected token"),
    ("1; print(2)", "  1; print(2)\n   ^ Unexpected token"),
    ("n = 8; n = n / (n - n);", "Division by 0 error"),
    ("n", "8"),
    ("func bad() {", ""), ("  bad = 1 / (n - n);", ""), ("}", ""),
    ("bad()", "bad, line 2: Division by 0 error"),
    ("set", "41"),
    ("set += 1;", ""),
    ("set", "42"),
    # The channel, and help.
    ('transmitstring("ver\\r")', ""),
    ("delay(100)", ""),
    ("receivestring()", '"firmware 1.0, no logic\\r\\n"'),
    ("help strlen", "strlen(s)\n  number of bytes"),
    ("twice", '"text"'),
    ("both", "func both() { both = later(); }"),
    ("SUBSTR", "substr(s, start [, length])\n  part of s, from position start (the first is 0); empty behind the end"),
    ("help nothing", 'There is no function nothing; "help" lists them'),
)


def check_session():
    typed = "".join(line + "\n" for line, _ in SESSION)
    shown = "".join(text + "\n" for _, text in SESSION if text)
    arguments = ["prompt", "--set", "set:int32=41", "--channel", "sim"]
    expect(arguments, 0, shown.encode(), text=(typed + "exit()\n1\n").encode())
    expect(arguments, 0, b"  (1 +\n      ^ Unexpected token\n", text=b"(1 +")
    expect(["prompt"], 0, text=b"exit\n1\n")
    expect(["prompt", "--fault", "Lock=1"], 0, b"the channel is locked\n", text=b"1\n")
    expect(["prompt", "--channel", "nowhere"], 2, message=b"--channel: unknown channel")
    _, output, _ = Call(["prompt"], b"help\n").end()
    check("help names every function", b"Strings and numbers\n  strlen substr instr" in output.replace(b"\r", b""), output)


def check_page():
    """The session in the page about the prompt, line for line."""
    page = (pathlib.Path(__file__).resolve().parents[2] / "docs/prompt.md").read_text(encoding="utf-8")
    first, _, *lines = page.partition("```console\n")[2].partition("```")[0].splitlines(keepends=True)
    check("the page starts the prompt", first == "$ ondscript --channel sim\n", first)
    typed = [line[2:] for line in lines if line.startswith(("> ", ". "))]
    shown = [line for line in lines if not line.startswith(("> ", ". "))]
    expect(["prompt", "--channel", "sim"], 0, "".join(shown).encode(), text="".join(typed).encode())


def check_terminal():
    os.environ["XDG_STATE_HOME"] = str(pathlib.Path("state").resolve())
    terminal = Terminal(["--channel", "sim"], with_output=True)

    def type_line(line, shown):
        terminal.read_until(b"> ")
        terminal.type(line + b"\r")
        terminal.read_until(shown)

    terminal.read_until(b'on sim; "help" tells more, "exit" leaves\r\n')
    type_line(b"2 * 21", b"\n42\r\n")
    terminal.read_until(b"> ")
    terminal.type(b"while (1) {\r")
    terminal.read_until(b". ")
    terminal.type(b"print(1);\x03")  # nothing of it is left
    type_line(b'print("begun\\n"); while (1) { }', b"\nbegun\r\n")
    terminal.process.send_signal(signal.SIGINT)  # as the terminal's Ctrl+C
    terminal.read_until(b"stopped\r\n")
    type_line(b'userinputdword("A", "number", 5)', b"number [5]: ")
    terminal.type(b"7\n")
    terminal.read_until(b"\n7\r\n")
    terminal.read_until(b"> ")
    terminal.type(b"\x1b[A\x1b[A\x1b[A")  # three lines back
    terminal.read_until(b"while (1) {")
    terminal.type(b"\x03")
    terminal.read_until(b"> ")
    terminal.type(b"\x04")
    code, _, shown = terminal.end()
    check("Ctrl+D leaves", code == 0, shown)
    # Without a terminal there is no prompt.
    expect(["--channel", "sim"], 2, message=b"FILE is required")


run_checks(check_session, check_page, *([check_terminal] if is_native else []))
