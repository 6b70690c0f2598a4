#!/usr/bin/env python3
"""Questions of a script to whoever sits at the terminal of ondscript, and to a pipe in his place."""

import pathlib
import signal

from calls import Terminal, check, expect, is_native, run_checks

END = b"Ctrl+D" if is_native else b"Ctrl+Z and Enter"
HINT = b" (Enter takes the value in brackets, " + END + b" cancels)\n"


def check_piped_answers():
    pathlib.Path("asks.dcs").write_bytes(rb"""var dword ok;
print(userinputdword("Limits", "How many", 50, 10, 20), "\n");
print(userinputuint64("No limits", "How many", 7), "\n");
print(userinputstring("Name", "Who", "nobody"), userinputstring("Name", "Who", "nobody"), "\n");
print(userinputstring("Name", "Who", ""), "\n");
print(userlistinput("Colour", "", "red\0blue\0", 1, &ok), ok, "\n");
messagebox("Ready", "Go on");
print(userinputint32("End", "of input", -3, -5, 5, &ok), ok, "\n");
messagebox("Really", "the end");
print(userinputstring("End", "of input", "none", &ok), ok, "\n");
""")
    expect(["run", "asks.dcs"], 0, b"12\n7\nnobody\n\"\"\n01\n-30\nnone0\n",
           b"Limits" + HINT + b"How many (10 to 20) [20]: Value must be <= 20\n"
           b'How many (10 to 20) [20]: "abc" is not a number\nHow many (10 to 20) [20]: '
           b"No limits" + HINT + b"How many [7]: "
           b'Name (Enter takes the text in brackets, "" the empty one, ' + END + b' cancels)\nWho [nobody]: '
           b'Name (Enter takes the text in brackets, "" the empty one, ' + END + b' cancels)\nWho [nobody]: '
           b"Name (Enter takes the empty text, " + END + b" cancels)\nWho: "
           b"Colour (Enter takes the item whose number is in brackets, " + END + b" cancels)\n  0  red\n  1  blue\n"
           b"Select an item (number or text) [1]: Ready: Go on [Enter] "
           b"End" + HINT + b"of input (-5 to 5) [-3]: \nReally: the end [Enter] \n"
           b'End (Enter takes the text in brackets, "" the empty one, ' + END + b' cancels)\nof input [none]: \n',
           b'25\nabc\n12\n\n\n""\n""\n0\n\n')


def check_items():
    """What is typed, and the item that it means."""
    answers = {"1": 1, " 1 ": 1, "Red": 0, "RED": 2, "1 V": 3, " 1 v": 3, "12": 4, "2": 2, '"2"': 5,
               # refused, then answered
               "reD\n1": 1, "6\n0": 0, "2x\n0": 0, "\n0": 0}
    pathlib.Path("items.dcs").write_text(
        'var string e; var string s; e = chr(0); s = "Red" + e + "red2" + e + "RED" + e + "1 V" + e + "12" + e + "2" + e;' +
        'print(userlistinput("", "", s, 9), " ");' * len(answers))
    expect(["run", "items.dcs"], 0, "".join(f"{number} " for number in answers.values()).encode(),
           b'"reD" is neither the number nor the text of an item\n', "".join(text + "\n" for text in answers).encode())


def check_cancelling():
    """The key for the end of the input cancels the question that it is typed at, and no other."""
    pathlib.Path("cancels.dcs").write_bytes(rb"""var dword ok;
print(userinputdword("A", "first", 5, 1, 9, &ok), ok, " ");
print(userinputdword("B", "second", 5, 1, 9, &ok), ok, " ");
messagebox("C", "box");
print(userinputstring("D", "text", "none", &ok), ok, " ");
messagebox("E", "box");
print(userinputstring("F", "last", "none", &ok), ok);
""")
    terminal = Terminal(["run", "cancels.dcs"])
    for prompt, keys in ((b"first (1 to 9) [5]: ", b"\x04"), (b"second (1 to 9) [5]: ", b"7\n"), (b"C: box [Enter] ", b"\x04"),
                         (b"text [none]: ", b"half\x04\x04"), (b"E: box [Enter] ", b"\n"), (b"last [none]: ", b"x\n")):
        terminal.read_until(prompt)
        terminal.type(keys)
    code, output, shown = terminal.end()
    check("Ctrl+D cancels one question", code == 0 and output == b"50 71 none0 x1", f"  exit code {code}, output {output}, {shown}")


def check_stopping():
    pathlib.Path("stops.dcs").write_bytes(b'while (1) { print(userinputdword("A", "number", 5)); }')
    terminal = Terminal(["run", "stops.dcs"])
    terminal.read_until(b"number [5]: ")
    terminal.type(b"12\x03")
    terminal.read_until(b"\nThe script stops at its next loop round or wait behind this question; Ctrl+C again ends the program at once\r\nnumber [5]: ")
    terminal.type(b"3\n")
    code, output, shown = terminal.end()
    check("Ctrl+C at a question", code == 21 and output.startswith(b"3Processing aborted") and b"stopped by Ctrl+C" in shown,
          f"  exit code {code}, output {output}, {shown}")

    # A terminal that goes away, or a service manager, waits for no answer.
    terminal = Terminal(["run", "stops.dcs"])
    terminal.read_until(b"number [5]: ")
    terminal.process.send_signal(signal.SIGTERM)
    code, output, shown = terminal.end()
    check("SIGTERM at a question", code == 21 and output.startswith(b"5Processing aborted") and b"stopped by SIGTERM" in shown,
          f"  exit code {code}, output {output}, {shown}")


run_checks(check_piped_answers, check_items, *([check_cancelling, check_stopping] if is_native else []))
