#!/usr/bin/env python3
"""`ondscript send` and `ondscript term`: on the simulated device, on TCP devices that take their time, on a terminal."""

import os
import pathlib
import pty
import re
import select
import signal
import socket
import subprocess
import termios
import threading
import time

from calls import TIMEOUT, Call, Terminal, check, command, expect, run_checks


class Device:
    """A device behind a TCP connection that does what the test tells it."""

    def __init__(self):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.listener.settimeout(TIMEOUT)
        self.channel = f"tcp:127.0.0.1:{self.listener.getsockname()[1]}"
        self.heard = b""

    def accept(self):
        self.line, _ = self.listener.accept()
        self.line.settimeout(TIMEOUT)

    def hear(self, expected):
        """Waits for bytes (checked)."""
        self.heard = b""
        while len(self.heard) < len(expected) and (part := self.line.recv(4096)):
            self.heard += part
        check(f"the device hears {expected}", self.heard == expected, self.heard)

    def say(self, *pieces):
        for piece in pieces:
            self.line.sendall(piece)
            if piece is not pieces[-1]:
                time.sleep(0.05)  # so that they come apart

    def hang_up(self):
        self.line.close()

    def live(self, script):
        """Lets `script(self)` go on beside the test, once somebody has connected."""
        def run():
            self.accept()
            script(self)
        thread = threading.Thread(target=run, daemon=True)
        thread.start()
        return thread


def rows_of(shown):
    """What stands on a screen that is wide enough, without empty rows at the end."""
    rows, column = [[]], 0
    for character in shown.decode(errors="replace"):
        if character == "\r":
            column = 0
        elif character == "\n":
            rows.append([])
            column = 0
        else:
            row = rows[-1]
            row.extend(" " * (column + 1 - len(row)))
            row[column] = character
            column += 1
    return ["".join(row).rstrip() for row in rows]


class Screen:
    """`term` on a terminal, as somebody sees it."""

    def __init__(self, *arguments):
        os.environ["XDG_STATE_HOME"] = str(pathlib.Path("state").absolute())
        self.terminal = Terminal(["term", *arguments], with_output=True)
        self.shown = b""
        self.wait("~quit ends.", "")

    def wait(self, *last):
        """Until the last rows look like this (checked); a text in slashes is a pattern."""
        def fits():
            rows = rows_of(self.shown)
            return len(rows) >= len(last) and all(
                re.fullmatch(wanted[1:-1], row) if wanted.startswith("/") else row.endswith(wanted) if wanted else not row
                for wanted, row in zip(last, rows[len(rows) - len(last):]))
        deadline = time.monotonic() + TIMEOUT
        while not fits() and time.monotonic() < deadline:
            if select.select([self.terminal.master], [], [], 0.1)[0]:
                try:
                    self.shown += os.read(self.terminal.master, 4096)
                except OSError:
                    break
        check(f"the screen shows {last}", fits(), rows_of(self.shown))

    def type(self, keys):
        self.terminal.type(keys)

    def end(self, code):
        """Waits for its end with this exit code, and for the terminal as it was (checked)."""
        deadline = time.monotonic() + TIMEOUT
        while self.terminal.process.poll() is None and time.monotonic() < deadline:
            if select.select([self.terminal.master], [], [], 0.01)[0]:
                try:
                    self.shown += os.read(self.terminal.master, 4096)
                except OSError:
                    pass
        got = self.terminal.process.poll()
        check(f"term ends with {code}", got == code, f"{got}\n{rows_of(self.shown)}")


FRESH = termios.tcgetattr(pty.openpty()[1])


def with_restored(screen, code):
    """As Screen.end; looks at the terminal while it is still there."""
    keeper = os.open(screen.terminal.name, os.O_RDWR | os.O_NOCTTY)
    screen.end(code)
    now = termios.tcgetattr(keeper)
    check("the terminal is what it was", now == FRESH, f"{now}, before {FRESH}")
    os.close(keeper)


def check_send():
    expect(["send", r"ver\r"], 0, b"firmware 1.0, no logic\r\n")
    expect(["send", "ver", r"\(13)", r"id\r"], 0, b"firmware 1.0, no logic\r\nsimulated device, serial number 1\r\n")
    expect(["send", r"ver\r", "--wait", "1.0"], 0, b"firmware 1.0")  # and not what follows
    expect(["send", r"id\r", "--hex"], 0, b"73 69 6D 75 6C 61 74 65 64 20 64 65 76 69 63 65  simulated device\n"
           b"2C 20 73 65 72 69 61 6C 20 6E 75 6D 62 65 72 20  , serial number \n31 0D 0A                                         1..\n")
    expect(["send", r"ver\r", "--wait", "2.0", "--timeout", "0.2"], 11, b"firmware 1.0, no logic\r\n",
           b"ondscript: sim: the text of --wait has not come\n")
    call = ["send", r"ver\r", "--wait", r"\n"]
    expect([*call, "--trace", "send.jsonl"], 0, b"firmware 1.0, no logic\r\n")
    expect([*call, "--channel", "replay:send.jsonl"], 0, b"firmware 1.0, no logic\r\n")
    expect(["send", r"id\r", "--channel", "replay:send.jsonl"], 4, b"", b'Transmit "id')


def check_wrong_calls_of_send():
    for arguments, message in {
        ("send",): b"TEXT is required",
        ("send", r"a\q"): b'TEXT "a\\q": Invalid ESC sequence "\\q".',
        ("send", ""): b"TEXT: the text is empty",
        ("send", "a", "--wait", ""): b"--wait: the text is empty",
        ("send", "a", "--timeout", "0"): b"--timeout 0: expected seconds",
        ("send", "a", "--silence", "x"): b"--silence x: expected seconds",
        ("send", "a", "--channel", "tcp:nowhere"): b"--channel: ",
        ("term", "--end", "nl"): b"--end nl: there are cr, lf, crlf, none",
        ("term", "--log", ""): b"--log: the file has no name",
    }.items():
        expect([*arguments], 2, b"", message)
    expect(["send", "a", "--fault", "Transmit=12"], 4, b"", b"sim: Device does not take its data\n")
    expect(["send", "a", "--fault", "Lock=1"], 20, b"", b"sim: Channel is locked by another client\n")
    expect(["send", "a", "--fault", "GetState=2"], 4, b"", b"sim: Channel is not open yet\n")
    expect(["term", "--fault", "GetState:1=2", "--silence", "2"], 0, b"1\r\n2\r\n", b"sim: Channel is not open yet\nondscript: sim: connected again\n",
           text=b"echo 1\necho 2\n")
    expect(["send", "a", "--fault", "Receive:2=3"], 4, b"", b"sim: Invalid argument\n")
    expect(["term", "--log", "no/such.log"], 5, b"", b"no/such.log: the file of --log cannot be written\n")


def check_slow_device():
    def answer(device):
        device.hear(b"go\r")
        device.say(b"working\r\nREA", b"D", b"Y\r\nmore")
    device = Device()
    device.live(answer)
    expect(["send", r"go\r", "--wait", "READY", "--timeout", "60", "--channel", device.channel], 0, b"working\r\nREADY")

    def chat(device):
        device.hear(b"go\r")
        device.say(b"1\n", b"2\n", b"3\n")
        device.line.recv(1)
    device = Device()
    device.live(chat)
    expect(["send", r"go\r", "--silence", "2", "--channel", device.channel], 0, b"1\n2\n3\n")

    def leave(device):
        device.hear(b"go\r")
        device.say(b"bye")
        device.hang_up()
    device = Device()
    device.live(leave)
    expect(["send", r"go\r", "--wait", "READY", "--timeout", "60", "--channel", device.channel], 4, b"bye", device.channel.encode() + b": ")
    device.listener.close()
    expect(["send", "a", "--channel", device.channel], 4, b"", device.channel.encode() + b": ")


def check_stopping():
    def answer(device):
        device.hear(b"go\r")
        device.say(b"working\n")
        device.line.recv(1)
    device = Device()
    device.live(answer)
    call = Call(["send", r"go\r", "--wait", "READY", "--timeout", "1000", "--channel", device.channel])
    deadline = time.monotonic() + TIMEOUT
    while os.fstat(call.output.fileno()).st_size == 0 and time.monotonic() < deadline:
        time.sleep(0.01)
    call.process.send_signal(signal.SIGINT)
    code, output, messages = call.end()
    check("Ctrl+C stops send", (code, output) == (21, b"working\n") and b"stopped by Ctrl+C" in messages, (code, output, messages))


def check_piped_lines():
    expect(["term"], 0, b"firmware 1.0, no logic\r\n850\r\n", text=b"ver\nadc 1\n")
    expect(["term", "--hex"], 0, b"38 35 30 0D 0A                                   850..\n", text=b"adc 1")
    expect(["term", "--channel", "tcp:127.0.0.1:1"], 4, b"", b"tcp:127.0.0.1:1: ")

    def listen(device):
        device.hear(b"a\x1B\n~b\n\xE4\nend" + bytes(range(256)) + b"c\r\n\n")
        device.say(b"\x1B[2Jok\0")
    pathlib.Path("bytes.bin").write_bytes(bytes(range(256)))
    device = Device()
    device.live(listen)
    expect(["term", "--end", "lf", "--silence", "3", "--channel", device.channel, "--log", "term.log"], 0, b"\x1B[2Jok\0",
           b": there is no command ~nothing; ~help lists them, ~~ sends a ~\n",
           text=b"a\\(x1B)\n~~b\n\\(xE4)\n~send end\n~file bytes.bin\n~nothing\n~end crlf\nc\n~end lf\n\n")
    log = [line.split(" ", 2)[2] for line in pathlib.Path("term.log").read_text().splitlines()]
    wanted = ["- connected to " + device.channel, "> a\\(x1B)", "> ~b", "> \\(xE4)", "> end", "> ~file bytes.bin"]
    check("what is sent is logged", log[:6] == wanted, log)
    check("what is received is logged", "< \\(x1B)[2Jok\\(x00)" in log, log)

    def leave(device):
        device.hear(b"a\r")
        device.say(b"bye\n")
        device.hang_up()
    for _ in range(20):  # the end may be seen before the last bytes are read, or behind them
        device = Device()
        device.live(leave)
        expect(["term", "--silence", "60", "--channel", device.channel, "--log", "term.log"], 4, b"bye\n", device.channel.encode() + b": ", text=b"a\n")
    check("a log goes on", len(pathlib.Path("term.log").read_text().splitlines()) > len(log))


def check_typing():
    device = Device()
    connected = device.live(lambda _: None)
    screen = Screen("--channel", device.channel)
    connected.join(TIMEOUT)
    screen.type(b"helo\x1B[Dl\r")
    screen.wait("hello", "")
    device.hear(b"hello\r")
    screen.type(b"second \xC3\xA4x\x7F\x7Fo\x01the \r")
    screen.wait("the second o", "")
    device.hear(b"the second o\r")
    screen.type(b"third")
    screen.wait("third")
    # What the device says meanwhile stands above; what has no end yet, in front.
    device.say(b"one\r\ntwo\r\n")
    screen.wait("one", "two", "third")
    device.say(b"name: ")
    screen.wait("two", "name: third")
    device.say(b"\x1B[2J\x07\xE4\xC3\xA4\n")
    screen.wait("two", "name: \\(x1B)[2J\\(x07)\u00E4\u00E4", "third")
    screen.type(b"\x1B[A\x1B[A!\r")
    screen.wait("hello!", "")
    device.hear(b"hello!\r")
    screen.type(b"\\q\r")
    screen.wait("\\q", '-- Invalid ESC sequence "\\q". Nothing is sent', "")
    screen.type(b"gone\x03~state\r")
    screen.wait("gone^C", "~state", "/-- TCP connection to .*, raw bytes, open; sent 26 bytes, received .*/", "")
    screen.type(b"~hex\r")
    screen.wait("-- bytes are shown", "")
    device.say(b"abc\r\n")
    screen.wait("61 62 63 0D 0A                                   abc..", "")
    screen.type(b"~hex\r~stamps\r")
    screen.wait("-- times are shown", "")
    device.say(b"abc\r\n\r\nd")
    time_of_day = r"/\d\d:\d\d:\d\d\.\d\d\d  "
    screen.wait(time_of_day + "abc/", time_of_day.rstrip() + "/", time_of_day + "d/")
    device.hang_up()
    screen.wait(time_of_day + "d/", "/-- .*; ~reconnect opens the channel again/", "")
    screen.type(b"~state\r")
    screen.wait(", raw bytes, closed; sent 26 bytes, received 38", "")
    screen.type(b"lost\r")
    screen.wait("lost", "-- the connection is closed; ~reconnect opens it again", "")
    connected = device.live(lambda _: None)
    screen.type(b"~reconnect\r")
    screen.wait(f"-- connected to {device.channel}", "")
    connected.join(TIMEOUT)
    screen.type(b"again\r")
    device.hear(b"again\r")
    device.hang_up()
    device.listener.close()
    screen.wait("~reconnect opens the channel again", "")
    screen.type(b"~reconnect\r")
    screen.wait("; ~reconnect tries again", "")
    screen.type(b"~state\r")
    screen.wait(", closed; sent 32 bytes, received 38", "")
    screen.type(b"~quit\r")
    with_restored(screen, 0)
    check("the history is kept", pathlib.Path("state/onddeviceclient/term-history").read_text().splitlines()[:3] ==
          ["hello", "the second o", "hello!"])


def check_ends():
    """Ways out, each of which leaves the terminal as it was."""
    for keys, code in {b"\x04": 0, b"\x03": 0, b"abc\x03\x03": 0, b"~.\r": 0}.items():
        screen = Screen("--no-history")
        screen.type(keys)
        with_restored(screen, code)
    for number, name in {signal.SIGTERM: "SIGTERM", signal.SIGHUP: "SIGHUP", signal.SIGINT: "Ctrl+C"}.items():
        screen = Screen()
        screen.type(b"\x1B[A")  # a line of the earlier sessions
        screen.wait("~quit")
        screen.terminal.process.send_signal(number)
        with_restored(screen, 21)
        check(f"{name} is told", f"stopped by {name}" in rows_of(screen.shown)[-2], rows_of(screen.shown))
    screen = Screen()
    os.close(screen.terminal.master)  # the terminal goes away
    check("term ends with its terminal", screen.terminal.process.wait(TIMEOUT) == 21)


def check_long_lines():
    """A line that is wider than the screen shows the part around the cursor, and all of it when it is sent."""
    screen = Screen("--no-history")
    line = "echo " + "0123456789" * 9
    screen.type(line.encode())
    screen.wait((line + " ")[-79:].rstrip())
    screen.type(b"\r")
    screen.wait(line, line[5:], "")
    screen.type(b"\x1B[A\x01\x0B\x1B[B\x1B[A\x15~clear\r")
    deadline = time.monotonic() + TIMEOUT
    while b"\x1B[H\x1B[2J" not in screen.shown and time.monotonic() < deadline:
        screen.shown += os.read(screen.terminal.master, 4096)
    screen.type(b"\x04")
    with_restored(screen, 0)


def check_page():
    """The calls in the page about these commands, and the session that it shows."""
    page = (pathlib.Path(__file__).parents[2] / "docs/term.md").read_text(encoding="utf-8")
    calls = re.findall(r"^```sh\n(.*?)^```\n\n```text\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    check("each call in the page shows what it prints", len(calls) == page.count("```sh\n") > 0)
    environment = {**os.environ, "PATH": f"{pathlib.Path(command[0]).parent}:{os.environ['PATH']}"}
    for shell, text in calls:
        done = subprocess.run(["sh", "-c", shell], env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              timeout=TIMEOUT, check=False)
        printed = done.stdout.decode().replace("\r\n", "\n")
        check(shell, printed.rstrip("\n") == text.rstrip("\n"), printed)
    (shown,) = re.findall(r"^```console\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    rows = shown.splitlines()
    screen = Screen("--no-history")
    for typed, last in (("adc 1", 850), ("~hex", "-- bytes are shown"), ("adc 1", "  850.."), ("~state", "received 10")):
        screen.type(typed.encode() + b"\r")
        screen.wait(str(last), "")
    screen.type(b"~quit\r")
    with_restored(screen, 0)
    check("the session is the page's", [row for row in rows_of(screen.shown) if row] == rows, rows_of(screen.shown))


run_checks(check_page, check_send, check_wrong_calls_of_send, check_slow_device, check_stopping, check_piped_lines, check_typing,
           check_ends, check_long_lines)
