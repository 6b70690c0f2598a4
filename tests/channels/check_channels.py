#!/usr/bin/env python3
"""Channels to real peers:  check_channels.py PAGE PROBE RUNNER [LAUNCHER]

PROBE (Probe.cpp) uses a channel operation by operation, RUNNER (ondscript or ondhost) runs scripts over it; LAUNCHER starts
Windows programs. TCP peers are sockets of this machine, serial ports are pseudo terminals that socat makes, under Wine with
the name of a COM port. The commands and the script in PAGE (docs/channels.md) are run as they stand there.
"""

import concurrent.futures
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


@contextlib.contextmanager
def running(channel, text):
    """The same while the caller is the device: a function that waits for exit code, output and messages."""
    with concurrent.futures.ThreadPoolExecutor() as executor:
        result = executor.submit(run, launcher + [runner, "run", "-", "--channel", channel], text)
        yield result.result


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
        check_closed(f"serial:{name}:9600", "There is no such serial port", was_open="no")
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
        check_serial_options(name)
        check_unplugged(name)


def check_reconnect():
    with peers.Server(peers.speak_and_close, clients=20) as server:  # the channel ends while it tries again
        told = probe(f"tcp:127.0.0.1:{server.port},reconnect", "collect", 20 * len("last words\n"))
        check("a line that is lost again and again", told.get("received") == "220" and told.get("codes") == "0 0 13 13 13 13 13"
              and re.fullmatch("(Connection closed by the device|Connection refused); trying again", told.get("text", "")), told)
    # What is sent to a lost line waits for it.
    again = LISTEN + rb'delay(300); s = ""; n = 0; transmitstring("y");' + LISTEN.split(b"\n", 1)[1]
    for keep_going in ((), ("--keep-going",)):
        with peers.Server(peers.answer_and_close, clients=2) as server:
            script(f"tcp:127.0.0.1:{server.port},reconnect", again, 0, b"heard answer\n\nheard answer\n\n",
                   options=("--trace", "again.jsonl", *keep_going))
        events = re.findall(r'"event":"(line\w+)"(?:,"reason":"(.*?)")?', pathlib.Path("again.jsonl").read_text())
        check("a reconnection is in the trace", events[:2] == [("lineLost", "Connection closed by the device"),
                                                               ("lineOpenAgain", "")], events)
    with peers.Server(peers.talk_and_reset) as server:  # what was on its way is lost
        script(f"tcp:127.0.0.1:{server.port},reconnect", SEND % 23, 4,
               message=b",reconnect: not everything was sent: The line was lost, and bytes with it")
    with peers.Server(peers.answer_and_close) as server:  # what waits for a line that stays away
        script(f"tcp:127.0.0.1:{server.port},reconnect", LISTEN + b'delay(300); transmitstring("y");', 4,
               b"heard answer\n\n", b"not everything was sent: Connection refused; trying again")
    with peers.Server(peers.answer_and_close) as server:  # a stop while it pauses or tries
        script(f"tcp:127.0.0.1:{server.port},reconnect", LISTEN + b"while (1) { s = receivestring(); delay(10); }", 11,
               b"heard answer\n\n" + ABORTED, b"longer than --timeout", ("--timeout", "2"))
    refused = f"tcp:127.0.0.1:{peers.unused_port()},reconnect"  # it was never there
    script(refused, b'print("not run");', code=4, message=refused.encode() + b": Connection refused")


def check_pace():
    for options, text, pauses in (("chardelay=20", "0123456789", 9 * 0.02),
                                  ("linedelay=100", r"one\r\ntwo\rthree\nfour", 3 * 0.1),
                                  ("linedelay=100,chardelay=10", r"ab\r\nc", 3 * 0.01 + 0.1)):
        with peers.Server(peers.collect_times) as server:
            script(f"tcp:127.0.0.1:{server.port},{options}", f'transmitstring("{text}");'.encode())
            time, received = server.answer()
            check(f"{options} keeps the pauses", received == text.encode().decode("unicode_escape").encode() and
                  time > pauses - 0.02, (time, received))
    with peers.tcp_echo(".") as port:
        told = probe(f"tcp:127.0.0.1:{port},chardelay=10", "echo", 100)
        check("a pace holds no call up", told.get("same") == "100", told)


# A pseudo terminal drops what nobody has read yet when its other end is closed.
STAY = b' s = ""; while (s == "") { s = receivestring(); }'


def check_serial_options(name):
    channel = f"serial:{name}:115200,"
    for flow in ("none", "xonxoff", "rtscts"):
        with peers.Terminal(".") as terminal, running(channel + f"flow={flow},break=50", ASK + b'transmitstring("more");' + STAY) as result:
            check(f"flow={flow}: the script asks", terminal.read() == b"ask\n")
            check(f"flow={flow} is set", terminal.flow() == flow, terminal.flow())
            hold = b"\x13" if flow == "xonxoff" else b""
            terminal.write(hold + b"go\n")
            if hold:
                check("a device holds the host up", terminal.read(0.5) == b"")
                terminal.write(b"\x11")
            check(f"flow={flow}: the rest comes", terminal.read() == b"more")
            terminal.write(b"bye\n")
            check(f"flow={flow}: the script ends", result() == (0, b"go\n", b""), result())
    with peers.Terminal(".") as terminal, running(channel + "linedelay=200", b'var string s; transmitstring("a\\rb\\rc");' + STAY) as result:
        begun, text, part = peers.time.monotonic(), b"", b"first"
        while part and not text.endswith(b"c"):
            part = terminal.read()
            text += part
        time = peers.time.monotonic() - begun  # from before the first line
        terminal.write(b"bye\n")
        check("a serial line keeps the pauses", text == b"a\rb\rc" and time > 0.4 and result()[0] == 0, (text, time))
    if not launcher:  # a pseudo terminal has no such line, which Wine does not tell
        with peers.Terminal("."):
            script(channel + "dtr=off", b"", 4, message=b"The serial port cannot set DTR")
        with peers.Terminal(".") as terminal:
            peers.fcntl.flock(terminal.device, peers.fcntl.LOCK_EX)
            script(channel + "reconnect", b"", 4, message=b"The serial port is in use by another program")


def check_unplugged(name):
    waits = ASK + b"while (1) { s = receivestring(); delay(10); }"
    with peers.Terminal(".") as terminal, running(f"serial:{name}:115200", waits) as result:
        terminal.read()
        terminal.write(b"go\n")
        terminal.vanish()
        begun = peers.time.monotonic()
        code, output, messages = result()
        time = peers.time.monotonic() - begun
        check("a port that is pulled out is noticed", code == 4 and time < 2, f"{code} {output} {messages}, after {time} s")
    with peers.Terminal(".") as terminal, running(f"serial:{name}:115200,reconnect", ASK) as result:
        check("the script asks", terminal.read() == b"ask\n")
        terminal.vanish()
        with peers.Terminal(".") as same:  # plugged in again
            same.write(b"go\n")
            code, output, messages = result()
        check("a port that is plugged in again goes on", (code, output) == (0, b"go\n"), f"{code} {output} {messages}")


PORT_LINES = rb"(serial:\S+:BAUD(  +\S.*)?\r?\n)+"


def check_ports():
    """Of a made-up system with two USB ports, a built-in one, an empty place and a terminal that is no port."""
    def write(path, text=""):
        path = pathlib.Path("system", path)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def link(path, target):
        path = pathlib.Path("system", path)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.symlink_to(os.path.relpath(pathlib.Path("system", target), path.parent))

    usb = "sys/devices/pci0/usb1"
    for place, name, facts in (
            (f"{usb}/1-1/1-1:1.0/ttyUSB2", "ttyUSB2", {"manufacturer": "Maker", "product": "USB UART", "serial": "A17"}),
            (f"{usb}/1-2/1-2:1.0/ttyUSB10", "ttyUSB10", {"product": "Adapter"}),
            ("sys/devices/platform/serial8250/0", "ttyS0", {}), ("sys/devices/platform/serial8250/1", "ttyS1", {})):
        write(f"sys/bus/drivers/{name[:-1]}/name")
        write(f"{place}/uevent")
        link(f"{place}/driver", f"sys/bus/drivers/{name[:-1]}")
        for fact, text in facts.items():
            write(f"{usb}/1-{1 if name == 'ttyUSB2' else 2}/{fact}", text + "\n")
        write(f"sys/class/tty/{name}/type", "0\n" if name == "ttyS1" else "4\n")
        link(f"sys/class/tty/{name}/device", place)
    write("sys/class/tty/tty0/dev", "4:0\n")
    link("dev/serial/by-id/usb-Maker_A17", "dev/ttyUSB2")
    code, output, _ = run(launcher + [probe_program, "system", "ports"])
    check("ports are listed", code == 0 and output.decode().splitlines() == [
        "serial:/dev/ttyS0:BAUD     driver ttyS",
        "serial:/dev/ttyUSB2:BAUD   Maker USB UART, serial number A17; always /dev/serial/by-id/usb-Maker_A17",
        "serial:/dev/ttyUSB10:BAUD  Adapter"], output.decode())


def check_ports_of_this_machine():
    code, output, messages = run(launcher + [runner, "ports"])
    name = os.path.basename(runner).removesuffix(".exe").encode()
    found = code == 0 and re.fullmatch(PORT_LINES, output) and not messages
    none = code == 4 and not output and messages.strip() == name + b": no serial port found"
    check("ports of this machine", found or none, (code, output, messages))


def check_texts():
    for channel, message in (
        ("tcp:host", b"expected tcp:HOST:PORT"),
        ("tcp:::1:4000", b"an IPv6 address stands in brackets"),
        ("tcp:host:65536", b'the port "65536" is not a number from 1 to 65535'),
        ("serial:COM3", b"expected serial:PORT:BAUD"),
        ("serial:COM3:9600:4N1", b'"4N1" is neither a speed nor a format'),
        ("serial:COM3:9600,chardelay=-1", b"chardelay=-1: expected milliseconds, 0 to 60000"),
        ("serial:COM3:9600,linedelay=60001", b"linedelay=60001: expected milliseconds, 0 to 60000"),
        ("serial:COM3:9600:8N1,dtr=maybe", b"dtr=maybe: expected on or off"),
        ("serial:COM3:9600,rts=", b"rts=: expected on or off"),
        ("serial:COM3:9600,break", b"break: expected milliseconds, 1 to 5000"),
        ("serial:COM3:9600,break=0", b"break=0: expected milliseconds, 1 to 5000"),
        ("serial:COM3:9600,break=5001", b"break=5001: expected milliseconds, 1 to 5000"),
        ("serial:COM3:9600,flow=all", b"flow=all: expected none, xonxoff or rtscts"),
        ("serial:COM3:9600,flow=rtscts,rts=off", b"rts does not go with flow=rtscts"),
        ("serial:COM3:9600,reconnect=5", b"reconnect takes no value"),
        ("serial:COM3:9600,dtr=on,reconnect,dtr=on", b"dtr is given twice"),
        ("serial:COM3:9600,", b'"" is no option; there are: reconnect, chardelay=MS, linedelay=MS, dtr=on|off, '),
        ("serial:COM3:9600,CHARDELAY=1", b'"CHARDELAY=1" is no option'),
        ("tcp:[::1]:4000,dtr=on", b"dtr is for serial ports only"),
        ("tcp:host:1,speed=9600", b'"speed=9600" is no option; there are: reconnect, chardelay=MS, linedelay=MS'),
        ("serial:COM3:4294967296", b'the speed "4294967296" is not a number of bits per second'),
    ):
        script(channel, b"", code=2, message=b'--channel: "' + channel.encode() + b'": ' + message)
    script("sim,reconnect", b"", code=2, message=b'--channel: unknown channel "sim,reconnect"; there are: sim')
    # Understood, though there is nothing.
    for channel in ("tcp:[fe80::1%none]:22", "serial:/dev/pci-0:14.0:1:115200:7e2", "serial:\\\\.\\COM12:4294967295",
                    "serial:a,b:9600,linedelay=60000,flow=none,reconnect"):
        script(channel, b"", code=4, message=channel.encode() + b": ")


def check_page():
    """The two devices of the page, and its script on each of them."""
    text = pathlib.Path(page).read_text(encoding="utf-8")

    def blocks(language):
        return re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)

    tcp_device, tcp_run, serial_device, serial_run, tcp_paced, serial_again = (shlex.split(block) for block in blocks("sh"))
    (lines,), (output, paced, ports, again) = blocks("dcs"), blocks("text")
    check(f"{page}: every run prints the same", paced == output and again == output)
    check(f"{page}: ports look so", re.fullmatch(PORT_LINES, ports.encode()))
    pathlib.Path("ask.dcs").write_text(lines)
    shutil.copytree(pathlib.Path(page).parent.parent / "lib", "lib")

    def run_as_shown(command, shown, here):
        command = [part.replace(shown, here) for part in command]
        result = run(launcher + [runner] + command[1:])
        check(f"{page}: {command}", result == (0, output.encode(), b""), f"  {result}, expected {output}")

    with peers.tcp_server(".", *(part.replace(":4000", ":0") for part in tcp_device[1:])) as port:
        run_as_shown(tcp_run, ":4000", f":{port}")
        run_as_shown(tcp_paced, ":4000", f":{port}")
    with serial_name(os.path.abspath("port")) as name:
        with peers.serial_port(".", *(part.replace("/tmp/bench", os.path.abspath("port")) for part in serial_device[1:])):
            run_as_shown(serial_run, "/tmp/bench", name)
            run_as_shown(serial_again, "/tmp/bench", name)


page, probe_program, runner, *launcher = [os.path.abspath(argument) for argument in sys.argv[1:]]
with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    check_texts()
    check_tcp()
    check_tcp_that_ends()
    check_tcp_end()
    check_tcp_that_waits()
    check_last_bytes()
    check_reconnect()
    check_pace()
    check_serial()
    if not launcher:  # Windows does not show its ports as files
        check_ports()
    check_ports_of_this_machine()
    check_page()
sys.exit(1 if failures else 0)
