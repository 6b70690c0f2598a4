#!/usr/bin/env python3
"""Channels to real peers:  check_channels.py PAGE PROBE RUNNER [LAUNCHER]

PROBE (Probe.cpp) uses a channel operation by operation, RUNNER (ondscript or ondhost) runs scripts over it; LAUNCHER starts
Windows programs. TCP peers are sockets of this machine, serial ports are pseudo terminals that socat makes, under Wine with
the name of a COM port. The commands and the script in PAGE (docs/channels.md) are run as they stand there.
"""

import contextlib
import os
import pathlib
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile

import peers

TIMEOUT = 60  # seconds, for any program that is started
# Milliseconds. No operation waits longer than 50 ms for a device; a call that does wait for it takes a second and more. What
# lies between is for a machine with other work to do.
LONGEST_CALL = 500
MEGABYTE = 1 << 20
CLOSED = "11 11 11 11 11 11 11"  # what each operation answers
COM_PORT = "COM33"  # from COM10 on, Windows knows ports only by their long names
failures = 0


def check(what, condition, details=""):
    global failures
    if not condition:
        failures += 1
        print(f"FAILED: {what}\n{details}", flush=True)


def run(command, text=b""):
    """Exit code, output and messages. Through files: Wine's background processes keep pipes open."""
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as messages:
        try:
            code = subprocess.run(command, input=text, stdout=output, stderr=messages, timeout=TIMEOUT).returncode
        except subprocess.TimeoutExpired:
            code = f"killed after {TIMEOUT} s"
        output.seek(0)
        messages.seek(0)
        return code, output.read(), messages.read()


def probe(channel, *scenario):
    """What the probe printed, by name. Checks what holds for every scenario."""
    code, output, messages = run(launcher + [probe_program, channel, *map(str, scenario)])
    told = dict(line.split(" ", 1) for line in output.decode(errors="replace").splitlines() if " " in line)
    details = f"  exit code {code}, output {output}, messages {messages}"
    check(f"{channel} {scenario}", code == 0, details)
    for time in ("longest-call", "end"):
        check(f"{channel} {scenario}: {time}", int(told.get(time, LONGEST_CALL + 1)) <= LONGEST_CALL, details)
    return told


def script(channel, text, code=0, output=b"", message=b"", options=()):
    """A script over the channel: its exit code, its output (a whole, or how it begins, with an ellipsis), a part of what is on
    standard error."""
    got_code, got_output, got_messages = run(launcher + [runner, "run", "-", "--channel", channel, *options], text)
    same = got_output.startswith(output[:-3]) if output.endswith(b"...") else got_output == output
    fits = got_code == code and same and (message in got_messages if message else not got_messages)
    check(f"a script over {channel}: {text[:60]}", fits, f"  exit code {got_code}, expected {code}\n  output {got_output},"
          f" expected {output}\n  messages {got_messages}, expected {message}")


def check_echo(channel):
    told = probe(channel, "echo", MEGABYTE)
    check(f"{channel}: every byte comes back as it was", told.get("same") == str(MEGABYTE), told)
    check(f"{channel} has no device files", told.get("codes") == "0 0 13 13 13 13 13", told)


def check_closed(channel, text, received=lambda: 0, was_open=None, pause=0):
    """A channel that ends as closed: each operation answers that code, whose text is the reason, once everything that was
    received() has been read."""
    told = probe(channel, "watch", pause)
    check(f"{channel} is closed", re.fullmatch(text, told.get("text", "")) and told.get("codes") == CLOSED and
          told.get("received") == str(received()) and told.get("same") == "yes", told)
    if was_open:
        check(f"{channel} was open before", told.get("was-open") == was_open, told)


# Sends 2^N bytes of x.
SEND = b'var string s; var dword n; s = "x"; while (n < %d) { s = s + s; n = n + 1; } transmitstring(s);'
ASK = b'var string s; transmitstring("ask\\n"); while (s == "") { s = receivestring(); } print(s);'


def check_tcp():
    with peers.tcp_echo(".") as port:
        check_echo(f"tcp:127.0.0.1:{port}")
        check_echo(f"tcp:localhost:{port}")  # again, and by name
        script(f"tcp:127.0.0.1:{port}", ASK, output=b"ask\n")
        script(f"tcp:127.0.0.1:{port}", b'transmitfilefromstring("x", 1, 2, 0, 1);',
               output=b"........................................\n"
               b"Device files are not possible over a raw byte stream during TransmitFileFromString\n")
    with contextlib.suppress(OSError), peers.socket.create_server(("::1", 0), family=peers.socket.AF_INET6):
        with peers.tcp_echo(".", "TCP6-LISTEN:0,bind=[::1],ipv6only") as port:
            check_echo(f"tcp:[::1]:{port}")


def worked():
    """Processor time in seconds of all programs that have ended."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def check_tcp_that_ends():
    refused = f"tcp:127.0.0.1:{peers.unused_port()}"
    check_closed(refused, "Connection refused", was_open="no")
    script(refused, b'print("not run");', code=4, message=refused.encode() + b": Connection refused")
    check_closed("tcp:nosuchhost.invalid:1", ".+", was_open="no")
    with peers.Server(peers.talk_and_close) as server:
        # The device has long been held up, and has hung up, when the first byte is read.
        before = worked()
        check_closed(f"tcp:127.0.0.1:{server.port}", "Connection closed by the device", server.answer, "yes", pause=3000)
        time = worked() - before
        check("a channel that nobody reads waits without working", launcher or time < 0.3, time)
        check("a device that nobody reads is held up", server.answer() < peers.TALK, server.answer())
    with peers.Server(peers.talk_and_reset) as server:
        told = probe(f"tcp:127.0.0.1:{server.port}", "echo", MEGABYTE)
        check("a connection that is reset ends", int(told.get("received", -1)) in (0, 1000), told)
    with peers.Server(peers.talk_and_reset) as server:
        script(f"tcp:127.0.0.1:{server.port}", SEND % 23, code=4, message=b"not everything was sent: ")


# Asks and listens until the answer's end, or for two seconds.
LISTEN = rb"""var string s; var int32 n; transmitstring("x");
while ((n < 100) & (instr(s, "\n") < 0)) { s += receivestring(); n += 1; delay(20); }
print("heard ", s, "\n");
"""
GOES_ON = rb'n = 0; while (n < 10) { s = receivestring(); n += 1; delay(20); } print("end\n");'
FAILS = b's = receivestring(); s = receivestring(); n = strtoint32(s);'
ABORTED = b"Processing aborted near line ..."
STOPPED = b"-: stopped, because the channel has ended"


def check_end(start, reason):
    """What becomes of scripts on a channel that `start()` makes, with a device that answers once and is gone."""
    for text, code, output, message, *options in (
        (LISTEN, 0, b"heard answer\n\n", b""),  # nothing is missing
        (LISTEN + GOES_ON, 4, b"heard answer\n\n" + ABORTED, STOPPED),
        (LISTEN + GOES_ON, 4, b"heard answer\n\n" + ABORTED, reason),
        (LISTEN + GOES_ON, 4, b"heard answer\n\nend\n", reason, "--keep-going"),
        (LISTEN + b"delay(500);" + FAILS, 21, b"heard answer\n\nType error near...", reason),
    ):
        with start() as channel:
            script(channel, text, code, output, message, options)


def check_tcp_end():
    @contextlib.contextmanager
    def start(serve=peers.answer_and_close):
        with peers.Server(serve) as server:
            yield f"tcp:127.0.0.1:{server.port}"

    check_end(start, b": Connection closed by the device")
    with start(peers.reset) as channel:
        script(channel, LISTEN, 4, ABORTED, STOPPED)
    with start(peers.answer_and_close) as channel:  # what has come in is read first, whatever is sent before that
        script(channel, b'var string s; var int32 n; transmitstring("x"); delay(500); transmitstring("x"); s = receivestring();'
               b'while (n < 2) { print(s); n += 1; }', 4, b"answer\nanswer\n", b": not everything was sent: ")
    with start(peers.answer_and_close) as channel:  # it is found at the sending
        script(channel, LISTEN + b'delay(500); transmitstring("x"); while (1) { }', 4, b"heard answer\n\n" + ABORTED,
               b": not everything was sent: Connection closed by the device")
    for _ in range(5):  # whichever is quicker, the end or the program
        with start(peers.speak_and_close) as channel:
            script(channel, b'var string s; delay(100); s = receivestring(); print(s);', 0, b"last words\n")
    with start(peers.speak_and_close) as channel:  # something is still to be read, and yet the line is dead
        script(channel, b'delay(500); print(transmitfilefromstring("abc", 1, 1, 0, 1), ";");', 4,
               b"." * 40 + b"\nConnection closed by the device during TransmitFileFromString\n11;",
               b": Connection closed by the device")


def check_serial_end(name):
    @contextlib.contextmanager
    def start():
        device = "SYSTEM:head -c 1 >/dev/null; echo answer"
        with peers.serial_port(".", "-t0.01", f"PTY,link={os.getcwd()}/port,raw,echo=0", device):
            yield f"serial:{name}:115200"

    check_end(start, f"serial:{name}:115200: ".encode())


def check_tcp_that_waits():
    with peers.blackhole() as port:
        told = probe(f"tcp:127.0.0.1:{port}", "leave")
        check("a channel that is connecting is closed", told.get("text") == "Channel is not open yet" and
              told.get("codes") == CLOSED, told)
        check_closed(f"tcp:127.0.0.1:{port}", "No answer within 10 s", was_open="no")
    with peers.Server(peers.never_read) as server:
        told = probe(f"tcp:127.0.0.1:{server.port}", "flood", 1 << 30)
        check("a device that does not read fills the channel", 16 * MEGABYTE <= int(told.get("taken", 0)) < 64 * MEGABYTE and
              told.get("answer") == "Device does not take its data", told)
    with peers.Server(peers.never_read) as server:
        script(f"tcp:127.0.0.1:{server.port}", SEND % 23, code=4, message=b"not everything was sent: Device does not take")


def check_last_bytes():
    """What a script sends last arrives, although the script does not wait for it."""
    # Windows does not tell a program which bytes have arrived.
    for serve in (peers.collect, peers.collect_slowly) + (() if launcher else (peers.collect_and_talk,)):
        with peers.Server(serve) as server:
            script(f"tcp:127.0.0.1:{server.port}", SEND % 23)
            answer = server.answer()
            check(f"{serve.__name__}: the last bytes arrive", answer == b"x" * (1 << 23),
                  len(answer) if isinstance(answer, bytes) else answer)


@contextlib.contextmanager
def serial_name(path):
    """The pseudo terminal's name for the programs under test."""
    if not launcher:
        yield path
        return
    run(launcher + ["cmd", "/c", "exit"])  # makes the prefix
    link = pathlib.Path(os.environ.get("WINEPREFIX") or pathlib.Path(launcher[0]).parent / "../build/wine",
                        "dosdevices", COM_PORT.lower())
    link.unlink(missing_ok=True)
    link.symlink_to(path)
    try:
        yield COM_PORT
    finally:
        link.unlink()


def check_serial():
    with serial_name(os.path.abspath("port")) as name:
        check_closed(f"serial:{name}:9600", "No such file or directory|File not found", was_open="no")
        with peers.serial_echo("."):
            check_echo(f"serial:{name}:115200")
        with peers.serial_echo("."):  # another one at the same place
            check_echo(f"serial:{name}:921600:7e2")
        with peers.serial_echo("."):
            channel = f"serial:{name}:115200:8N1"
            script(channel, ASK, output=b"ask\n")
        with peers.serial_echo(".") as peer:
            killer = peers.threading.Timer(1, peer.kill)  # by then the probe is in the middle, or has not begun
            killer.start()
            told = probe(channel, "echo", 64 * MEGABYTE)
            killer.join()
            check("a serial port that vanishes ends", int(told.get("received", 64 * MEGABYTE)) < 64 * MEGABYTE and
                  told.get("same") == told.get("received"), told)
        check_serial_end(name)


def check_texts():
    for channel, message in (
        ("tcp:host", b"expected tcp:HOST:PORT"),
        ("tcp:::1:4000", b"an IPv6 address stands in brackets"),
        ("tcp:host:65536", b'the port "65536" is not a number from 1 to 65535'),
        ("serial:COM3", b"expected serial:PORT:BAUD"),
        ("serial:COM3:9600:4N1", b'"4N1" is neither a speed nor a format'),
        ("serial:COM3:4294967296", b'the speed "4294967296" is not a number of bits per second'),
    ):
        script(channel, b"", code=2, message=b'--channel: "' + channel.encode() + b'": ' + message)
    # Understood, though there is nothing.
    for channel in ("tcp:[fe80::1%none]:22", "serial:/dev/pci-0:14.0:1:115200:7e2", "serial:\\\\.\\COM12:4294967295"):
        script(channel, b"", code=4, message=channel.encode() + b": ")


def check_page():
    """The two devices of the page, and its script on each of them."""
    text = pathlib.Path(page).read_text(encoding="utf-8")

    def blocks(language):
        return re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)

    tcp_device, tcp_run, serial_device, serial_run = (shlex.split(block) for block in blocks("sh"))
    (lines,), (output,) = blocks("dcs"), blocks("text")
    pathlib.Path("ask.dcs").write_text(lines)
    shutil.copytree(pathlib.Path(page).parent.parent / "lib", "lib")

    def run_as_shown(command, shown, here):
        command = [part.replace(shown, here) for part in command]
        result = run(launcher + [runner] + command[1:])
        check(f"{page}: {command}", result == (0, output.encode(), b""), f"  {result}, expected {output}")

    with peers.tcp_server(".", *(part.replace(":4000", ":0") for part in tcp_device[1:])) as port:
        run_as_shown(tcp_run, ":4000", f":{port}")
    with serial_name(os.path.abspath("port")) as name:
        with peers.serial_port(".", *(part.replace("/tmp/bench", os.path.abspath("port")) for part in serial_device[1:])):
            run_as_shown(serial_run, "/tmp/bench", name)


page, probe_program, runner, *launcher = [os.path.abspath(argument) for argument in sys.argv[1:]]
with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    check_texts()
    check_tcp()
    check_tcp_that_ends()
    check_tcp_end()
    check_tcp_that_waits()
    check_last_bytes()
    check_serial()
    check_page()
sys.exit(1 if failures else 0)
