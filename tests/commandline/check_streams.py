#!/usr/bin/env python3
"""A command line among other programs: output as it comes, readers that go away, closed streams, and whatever asks a run to end."""

import fcntl
import os
import pathlib
import re
import select
import signal
import socket
import threading
import time

from calls import TIMEOUT, Call, Terminal, check, command, expect, is_native, name, run_checks, wait_for_file


def check_output_and_stop():
    reading, writing = os.pipe()
    call = Call(["run", "-"], b'print("first\\n"); print("second"); while (1) { }', writing)
    os.close(writing)
    printed = b""
    while len(printed) < 12 and select.select([reading], [], [], TIMEOUT)[0]:
        printed += os.read(reading, 100)
    check("output appears when it is printed, also the beginning of a line", printed == b"first\nsecond", printed)
    call.process.send_signal(signal.SIGINT)
    code, _, messages = call.end()
    output = os.read(reading, 1000)
    os.close(reading)
    check("Ctrl+C ends the run", code == 21 and output.startswith(b"Processing aborted near line 1/") and
          b"stopped by Ctrl+C" in messages, f"  exit code {code}, output {output}, messages {messages}")


TRANSFER = b'writestringtofile("sends", "x"); transmitfilefromstring("x", 1, 1, 0);'


def transfer_call(prepare=None):
    """A run that is about to send a file for a minute."""
    pathlib.Path("sends").unlink(missing_ok=True)
    call = Call(["run", "-", "--block-time", "60000"], TRANSFER, prepare=prepare)
    wait_for_file("sends")
    return call


def expect_stopped(call, cause):
    code, output, messages = call.end()
    check(f"{cause} aborts a transfer and ends the run",
          code == 21 and b"Transfer aborted during TransmitFileFromString\nSystem function failed" in output and
          messages.replace(b"\r", b"") == f"{name}: -: stopped by {cause}\n".encode(), f"  exit code {code}, output {output}, messages {messages}")


def check_signals():
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        call = transfer_call()
        call.process.send_signal(number)
        expect_stopped(call, "Ctrl+C" if number == signal.SIGINT else number.name)
    # As nohup starts it, or a shell in the background: what goes on at the terminal is none of its business.
    terminal = (signal.SIGINT, signal.SIGHUP)
    call = transfer_call(lambda: [signal.signal(number, signal.SIG_IGN) for number in terminal])
    for number in terminal:
        call.process.send_signal(number)
    time.sleep(0.1)  # a stop by one of these would be told first
    call.process.send_signal(signal.SIGTERM)
    expect_stopped(call, "SIGTERM")


def check_signal_at_the_end():
    """A run whose last output waits for its reader has not ended yet."""
    reading, writing = os.pipe()
    room = fcntl.fcntl(writing, fcntl.F_SETPIPE_SZ, 4096)
    os.write(writing, b"-" * (room - 1))
    call = Call(["run", "-"], b'print("1"); print("2"); writestringtofile("printed", "x");', writing)
    os.close(writing)
    wait_for_file("printed")
    call.process.send_signal(signal.SIGTERM)
    time.sleep(0.1)  # the end of the process by this one would come first
    output = os.read(reading, room) + os.read(reading, room)
    code, _, messages = call.end()
    os.close(reading)
    check("SIGTERM while the last output waits", code == 0 and output.endswith(b"-12") and b"not stopped by SIGTERM" in messages,
          f"  exit code {code}, output {output[-10:]}, messages {messages}")


def check_shown_before_waiting():
    """What is printed is out before the script uses its channel, and where the engine tells, before it waits or asks."""
    steps = ['transmitstring("x");'] + (['delay(0);', 'messagebox("Ready", "Go on");'] if name == "ondscript" else [])
    pathlib.Path("waits.dcs").write_text("var int32 i; while (i < 20) {" + "".join(f'print("(", ")"); {step}' for step in steps) + "i += 1; }")
    reading, writing = os.pipe2(os.O_DIRECT)  # reading takes what one write wrote
    call = Call(["run", "waits.dcs"], b"\n" * 20, writing)
    os.close(writing)
    pieces = []
    while piece := os.read(reading, 65536):
        pieces.append(piece)
    os.close(reading)
    check("everything shows before the script waits", call.end()[0] == 0 and b"".join(pieces) == b"()" * 20 * len(steps) and
          not any(b")(" in piece for piece in pieces), pieces)


def check_console_events():
    """What Windows tells the programs of a console: CTRL_CLOSE_EVENT, CTRL_LOGOFF_EVENT, CTRL_SHUTDOWN_EVENT."""
    for event, cause in ((2, "closing the console"), (5, "logging off"), (6, "shutting down")):
        pathlib.Path("sends").unlink(missing_ok=True)
        console_event = str(pathlib.Path(command[-1]).with_name("console_event.exe"))
        start = [*command[:-1], console_event, "sends", str(event), command[-1]]
        call = Call(["run", "-", "--block-time", "60000"], TRANSFER, start=start)
        expect_stopped(call, cause)


def held_up_call(last):
    """A run that nobody takes the output of, and that output's end; `last` prints the text s, of 8 KiB, too often."""
    reading, writing = os.pipe()
    # Pieces of 8 KiB fill the pipe to the brim, so that the diagnostic finds no room either.
    call = Call(["run", "-"], b'var string s; var dword n; s = "01234567"; while (n < 10) { s = s + s; n = n + 1; }' + last, writing)
    deadline = time.monotonic() + TIMEOUT
    while select.select([], [writing], [], 0)[1] and time.monotonic() < deadline:
        time.sleep(0.01)
    check("the pipe is full", not select.select([], [writing], [], 0)[1])
    os.close(writing)
    return call, reading


def check_interrupt_too_late():
    """Where nothing asks any more whether to stop, the run goes on to its end, and tells so."""
    call, reading = held_up_call(b"print(s, s, s, s, s, s, s, s, s, s, s, s, s, s, s, s);")
    call.process.send_signal(signal.SIGINT)
    taken = re.compile(r"^(?:SigPnd|ShdPnd):\t0+$", re.MULTILINE)
    deadline = time.monotonic() + TIMEOUT
    while len(taken.findall(pathlib.Path(f"/proc/{call.process.pid}/status").read_text())) < 2 and time.monotonic() < deadline:
        time.sleep(0.01)
    time.sleep(0.2)  # from taking the signal to noting it
    while os.read(reading, 65536):
        pass
    os.close(reading)
    code, _, messages = call.end()
    check("an interrupt that comes too late", code == 0 and
          messages == b"ondscript: -: not stopped by Ctrl+C: the script went on to its end\n", (code, messages))


def check_second_interrupt():
    """A run that cannot end, because nobody takes its output, is ended by the second Ctrl+C, and by nothing else."""
    call, reading = held_up_call(b"while (1) { print(s); }")
    if is_native:
        for _ in range(2):  # service managers like to ask twice
            call.process.send_signal(signal.SIGTERM)
            time.sleep(0.2)
        check("SIGTERM twice leaves a run its time", call.process.poll() is None)
    deadline = time.monotonic() + TIMEOUT
    while call.process.poll() is None and time.monotonic() < deadline:
        call.process.send_signal(signal.SIGINT)
        time.sleep(0.2)  # signals that come together count once
    code, _, _ = call.end()
    # Wine passes on the last byte of what Windows calls an end by Ctrl+C, 0xC000013A.
    ended = -signal.SIGINT if is_native else 0x3A
    check("the second Ctrl+C ends the process", code == ended, f"  exit code {code}")
    os.close(reading)


def check_lost_output():
    endless = b'while (1) { print("x"); }'
    lost = b"standard output cannot be written"
    with open("/dev/full", "wb") as full:
        calls = [Call(["run", "-"], endless, full), Call(["--help"], stdout=full)]
    reading, writing = os.pipe()
    os.close(reading)
    calls.append(Call(["run", "-"], endless, writing))
    os.close(writing)
    for call in calls:
        code, _, messages = call.end()
        check("output that cannot be written", code == 5 and lost in messages, f"  exit code {code}, messages {messages}")


class Device:
    """A TCP peer that keeps what it is sent."""

    def __init__(self):
        self.received = b""
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.channel = f"tcp:127.0.0.1:{self.listener.getsockname()[1]}"
        self.thread = threading.Thread(target=self.serve)
        self.thread.start()

    def serve(self):
        with self.listener.accept()[0] as connection:
            connection.settimeout(TIMEOUT)
            while data := connection.recv(4096):
                self.received += data

    def end(self):
        self.thread.join()
        self.listener.close()
        return self.received


def check_closed_streams():
    """No file or connection gets the number of a stream that is closed from the start."""
    asks = 'messagebox("Ready", "Go on");' if name == "ondscript" else ""
    for closed in ([0], [1], [2], [0, 1], [0, 2], [1, 2], [0, 1, 2]):
        def close_streams(numbers=tuple(closed)):
            for number in numbers:
                os.close(number)

        def ended(call, closed=closed):
            """Output and messages, where they had a way out."""
            code, output, messages = call.end()
            return code, 1 in closed or output, 2 in closed or messages

        device = Device()
        pathlib.Path("sends.dcs").write_text(f'transmitstring("to the device"); {asks} print("printed"); var int32 n; n = 1 / 0;')
        code, output, messages = ended(Call(["run", "sends.dcs", "--channel", device.channel], prepare=close_streams))
        received = device.end()
        check(f"with {closed} closed, the device gets what it is sent", received == b"to the device", received)
        fits = code == (5 if 1 in closed else 21) and (output is True or output.startswith(b"printed"))
        check(f"with {closed} closed, the run ends by its own", fits and (messages is True or messages),
              f"  exit code {code}, output {output}, messages {messages}")

        pathlib.Path("silent.dcs").write_text("var int32 n; n = 1;")
        expected = (0, 1 in closed or b"", 2 in closed or b"")
        silent = ended(Call(["run", "silent.dcs"], prepare=close_streams))
        check(f"with {closed} closed, a run without output succeeds", silent == expected, silent)
        if 0 in closed:
            code = Call(["run", "-"], prepare=close_streams).end()[0]
            check(f"with {closed} closed, there is no script on standard input", code == 5, code)


BARS = rb"""print("own\r50%", "\r", "x........................................");
print("\r"); print("........................................"); print("mine\n");
print("title ");
transmitfilefromstring("a", 1, 1, 0);
transmitfile("bars.dcs", 2, 1, 0);
transmitfile("none.dcs", 2, 1, 0, 1);
transmitfilefromstring("a", 1, 1, 99, 1);
print("\r"); print("................................ ........................................");
"""


def check_bars():
    """On a terminal, bars are redrawn; elsewhere their last state is a line. What a script itself prints stays as it is."""
    pathlib.Path("bars.dcs").write_bytes(BARS)
    empty, full = b"." * 40, b"#" * 40
    before = b"own\r50%\rx" + empty + b"\r" + empty + b"mine\ntitle "
    failures = b"\nLocal file cannot be read during TransmitFile (none.dcs)\n%s\nUnknown file mode during TransmitFileFromString\n"
    after = b"\r................................ " + empty
    expect(["run", "bars.dcs"], 0, before + b"\n" + full + b" -> OK\nbars.dcs " + full + b" -> OK\n" + failures % empty + after)
    if is_native:
        def drawn(title):
            return b"".join(b"\r" + title + b"#" * steps + b"." * (40 - steps) for steps in range(41)) + b" -> OK\n"

        code, _, shown = Terminal(["run", "bars.dcs"], with_output=True).end()
        expected = before + b"\r" + empty + drawn(b"") + drawn(b"bars.dcs ") + failures % (b"\r" + empty) + after
        check("bars on a terminal", code == 0 and shown.replace(b"\r\n", b"\n") == expected, shown)


run_checks(check_output_and_stop, check_second_interrupt, check_lost_output, check_closed_streams, check_bars,
           check_shown_before_waiting, *([check_signals, check_interrupt_too_late, check_signal_at_the_end] if is_native
                                         else [check_console_events]))
