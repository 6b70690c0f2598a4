"""The other sides of the channels under test. Each is a context manager that ends what it started; every wait is bounded and
names what it waits for."""

import contextlib
import fcntl
import os
import pathlib
import pty
import re
import select
import socket
import struct
import subprocess
import termios
import threading
import time
import tty

PATIENCE = 30  # seconds


def wait_for(what, happened):
    """The first true answer of `happened`."""
    end = time.monotonic() + PATIENCE
    while True:
        answer = happened()
        if answer:
            return answer
        if time.monotonic() > end:
            raise TimeoutError(f"waited {PATIENCE} s for {what}")
        time.sleep(0.01)


def pattern(size):
    """The bytes that the probe sends, which repeat after so many."""
    period = 251 * 256
    once = bytes((i * 31 + i // 251) & 0xFF for i in range(period))
    return (once * (size // period + 1))[:size]


@contextlib.contextmanager
def socat(log, *arguments):
    """A running socat; its messages go to the file `log`."""
    with open(log, "wb") as messages:
        process = subprocess.Popen(["socat", "-d", "-d", *arguments], stderr=messages, stdin=subprocess.DEVNULL)
    try:
        yield process
    finally:
        process.terminate()
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


@contextlib.contextmanager
def tcp_server(folder, *arguments):
    """The port on which a socat with these arguments listens."""
    log = pathlib.Path(folder, "socat-tcp.log")
    with socat(log, *arguments):
        found = wait_for("socat to listen", lambda: re.search(rb"listening on .*:(\d+)", log.read_bytes()))
        yield int(found.group(1))


def tcp_echo(folder, address="TCP-LISTEN:0,bind=127.0.0.1"):
    """The same, where everything comes back, to any number of clients."""
    return tcp_server(folder, f"{address},fork", "PIPE")


@contextlib.contextmanager
def serial_port(folder, *arguments):
    """The socat with these arguments, once it has made a serial port."""
    log = pathlib.Path(folder, "socat-serial.log")
    with socat(log, *arguments) as process:
        # The port is there before its settings are: what is sent in between would be lost.
        wait_for("socat to make the serial port", lambda: b"starting data transfer" in log.read_bytes())
        yield process


def serial_echo(folder):
    """The same for the port `folder`/port, where everything comes back."""
    return serial_port(folder, f"PTY,link={folder}/port,raw,echo=0", "PIPE")


class Terminal:
    """A serial port `folder`/port whose other end is this object, so that its settings can be seen."""

    def __init__(self, folder):
        self.link = pathlib.Path(folder, "port")

    def __enter__(self):
        self.end, self.device = pty.openpty()
        tty.setraw(self.device)
        self.link.unlink(missing_ok=True)
        self.link.symlink_to(os.ttyname(self.device))
        return self

    def __exit__(self, *_):
        self.vanish()
        os.close(self.device)
        self.link.unlink(missing_ok=True)

    def vanish(self):
        """As a device does that is pulled out."""
        if self.end is not None:
            os.close(self.end)
            self.end = None

    def read(self, patience=PATIENCE):
        """What comes next; nothing when nothing does."""
        return os.read(self.end, 4096) if select.select([self.end], [], [], patience)[0] else b""

    def write(self, text):
        os.write(self.end, text)

    def flow(self):
        """The flow control that is set, as channels call it."""
        iflag, _, cflag, *_ = termios.tcgetattr(self.end)
        return "rtscts" if cflag & termios.CRTSCTS else "xonxoff" if iflag & termios.IXON and iflag & termios.IXOFF else "none"


class Server:
    """A TCP server for one client after the other, which `serve(connection)` handles on a thread of its own; behind the last of
    them, nobody listens any more."""

    def __init__(self, serve, clients=1):
        self.clients = clients
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.listener.settimeout(PATIENCE)
        self.port = self.listener.getsockname()[1]
        self.serve = serve
        self.ended = threading.Event()  # for `serve`: the test is over
        self.result = None
        self.thread = threading.Thread(target=self.run)

    def run(self):
        try:
            for left in reversed(range(self.clients)):
                connection, _ = self.listener.accept()
                if left == 0:
                    self.listener.close()
                with connection:
                    connection.settimeout(PATIENCE)
                    self.result = self.serve(connection, self.ended)
        except OSError as error:
            self.result = error

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ended.set()
        self.thread.join(2 * PATIENCE)
        self.listener.close()

    def answer(self):
        """What `serve` returned."""
        self.thread.join(2 * PATIENCE)
        if self.thread.is_alive():
            raise TimeoutError("the server of the test did not end")
        return self.result


def collect(connection, _):
    """Everything until the client ends."""
    parts = []
    while part := connection.recv(65536):
        parts.append(part)
    return b"".join(parts)


def collect_slowly(connection, ended):
    """The same, by a device that takes its time: the bytes wait in the client."""
    parts = []
    while part := connection.recv(65536):
        parts.append(part)
        ended.wait(0.005)
    return b"".join(parts)


def collect_times(connection, _):
    """When the first and the last byte came, and all of them."""
    first, parts = None, []
    while part := connection.recv(65536):
        last = time.monotonic()
        first = first or last
        parts.append(part)
    return last - first, b"".join(parts)


def never_read(_, ended):
    ended.wait(PATIENCE)


def collect_and_talk(connection, ended):
    """The same, while the device says what nobody reads: a careless end of the client would lose its last bytes."""
    parts = []
    with contextlib.suppress(OSError):  # the client may be gone before its last bytes are read
        while part := connection.recv(65536):
            parts.append(part)
            with contextlib.suppress(OSError):
                connection.send(b"answer")
            ended.wait(0.005)
    return b"".join(parts)


TALK = 64 << 20  # bytes; more than a client and the system keep for later
WORDS = memoryview(pattern(TALK))  # made before somebody waits for them


def talk_and_close(connection, _):
    """Talks until nobody takes it any more; how much that was."""
    connection.settimeout(1)
    taken = 0
    with contextlib.suppress(TimeoutError):
        while taken < TALK:
            taken += connection.send(WORDS[taken:])
    return taken


def talk_and_reset(connection, _):
    """Vanishes with an error in the middle of what the client sends."""
    connection.sendall(pattern(1000))
    connection.recv(1)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def answer_and_close(connection, _):
    """Answers the first word, and is gone."""
    connection.recv(100)
    connection.sendall(b"answer\n")


def speak_and_close(connection, _):
    """Has something to say, and is gone at once."""
    connection.sendall(b"last words\n")


def reset(connection, _):
    """Vanishes with an error as soon as it is spoken to."""
    connection.recv(1)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def unused_port():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        return listener.getsockname()[1]


@contextlib.contextmanager
def blackhole():
    """A port whose system answers nothing at all: its list of clients to accept is full."""
    with contextlib.ExitStack() as stack:
        listener = stack.enter_context(socket.create_server(("127.0.0.1", 0), backlog=0))
        for _ in range(8):
            client = stack.enter_context(socket.socket())
            client.setblocking(False)
            client.connect_ex(listener.getsockname())
        yield listener.getsockname()[1]
