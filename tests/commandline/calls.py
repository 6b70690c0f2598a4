"""Starting a command line and looking at it from outside; what the checks in this folder share.

Each of them is called as  check_….py NAME COMMAND...,  where NAME is ondscript or ondhost and COMMAND what starts it; both are
Windows programs in one build, ondscript alone is native in the other.
"""

import fcntl
import os
import pathlib
import pty
import select
import subprocess
import sys
import tempfile
import termios
import time

TIMEOUT = 60  # seconds, for anything that should end
failures = 0
name, *command = sys.argv[1:]
is_native = not command[-1].endswith(".exe")


def check(what, condition, details=""):
    global failures
    if not condition:
        failures += 1
        print(f"FAILED: {what}\n{details}")


class Call:
    """A running program. Its output goes to files: Wine's background processes keep a pipe open long after its end."""

    def __init__(self, arguments, text=b"", stdout=None, prepare=None, start=None, stdin=None):
        """`stdin` stands for `text`; `prepare` is called in the new process before the program begins; `start` replaces what starts it."""
        self.output, self.messages = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.process = subprocess.Popen((start or command) + arguments, stdin=stdin or subprocess.PIPE,
                                        stdout=stdout or self.output, stderr=self.messages, preexec_fn=prepare)
        if stdin:
            return
        try:
            self.process.stdin.write(text)
            self.process.stdin.close()
        except BrokenPipeError:
            pass  # it does not read standard input

    def end(self):
        """Exit code (None: killed after the time-out), output, messages; these with the line ends that they have here."""
        try:
            code = self.process.wait(TIMEOUT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            code = None
        self.output.seek(0)
        self.messages.seek(0)
        return code, self.output.read(), self.messages.read().replace(b"\r\n", b"\n")


def wait_for_file(path):
    deadline = time.monotonic() + TIMEOUT
    while not pathlib.Path(path).exists() and time.monotonic() < deadline:
        time.sleep(0.01)
    check(f"{path} is there", pathlib.Path(path).exists())


def expect(arguments, code, output=b"", message=b"", text=b""):
    """One call: its exit code, its whole output, a part of its messages."""
    got_code, got_output, got_messages = Call(arguments, text).end()
    fits = got_code == code and got_output == output and (message in got_messages if message else not got_messages)
    check(" ".join(arguments), fits, f"  exit code {got_code}, expected {code}\n  output {got_output}, expected {output}\n"
          f"  messages {got_messages}, expected {message}")


class Terminal:
    """A program on a terminal of its own: its input, its messages and, if wanted, its output."""

    def __init__(self, arguments, with_output=False):
        self.master, slave = pty.openpty()
        self.name = os.ttyname(slave)
        self.output = tempfile.TemporaryFile()

        def take_terminal():
            os.setsid()
            fcntl.ioctl(0, termios.TIOCSCTTY, 0)

        self.process = subprocess.Popen(command + arguments, stdin=slave, stdout=slave if with_output else self.output,
                                        stderr=slave, preexec_fn=take_terminal)
        os.close(slave)

    def read_until(self, text):
        """What shows until `text` has (checked), or until the program has let go of the terminal (None)."""
        shown = b""
        deadline = time.monotonic() + TIMEOUT
        while (text is None or not shown.endswith(text)) and time.monotonic() < deadline:
            if not select.select([self.master], [], [], 1)[0]:
                continue
            try:
                shown += os.read(self.master, 1 if text else 4096)
            except OSError:  # nobody has it open any more
                break
        check(f"the terminal shows {text}", text is None or shown.endswith(text), shown)
        return shown

    def type(self, keys):
        os.write(self.master, keys)

    def end(self):
        """Exit code, output that did not go to the terminal, and what the terminal shows at the end."""
        shown = self.read_until(None)
        code = self.process.wait(TIMEOUT)
        os.close(self.master)
        self.output.seek(0)
        return code, self.output.read(), shown


def run_checks(*checks):
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for each in checks:
            each()
        os.chdir("/")
    sys.exit(1 if failures else 0)
