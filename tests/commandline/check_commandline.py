#!/usr/bin/env python3
"""What a user and a production line see of a command line:  check_commandline.py NAME COMMAND...

NAME is ondscript or ondhost, COMMAND what starts it: exit codes, standard output byte for byte, what standard error says, the
files of the simulated device, output that appears when it is printed, and Ctrl+C.
"""

import os
import pathlib
import select
import signal
import subprocess
import sys
import tempfile
import time

TIMEOUT = 60  # seconds, for anything that should end
failures = 0


def check(what, condition, details=""):
    global failures
    if not condition:
        failures += 1
        print(f"FAILED: {what}\n{details}")


class Call:
    """A running program. Its output goes to files: Wine's background processes keep a pipe open long after its end."""

    def __init__(self, arguments, text=b"", stdout=None):
        self.output, self.messages = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        self.process = subprocess.Popen(command + arguments, stdin=subprocess.PIPE, stdout=stdout or self.output,
                                        stderr=self.messages)
        try:
            self.process.stdin.write(text)
            self.process.stdin.close()
        except BrokenPipeError:
            pass  # it does not read standard input

    def end(self):
        """Exit code (None: killed after the time-out), output, messages."""
        try:
            code = self.process.wait(TIMEOUT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            code = None
        self.output.seek(0)
        self.messages.seek(0)
        return code, self.output.read(), self.messages.read()


def expect(arguments, code, output=b"", message=b"", text=b""):
    """One call: its exit code, its whole output, a part of its messages."""
    got_code, got_output, got_messages = Call(arguments, text).end()
    fits = got_code == code and got_output == output and (message in got_messages if message else not got_messages)
    check(" ".join(arguments), fits, f"  exit code {got_code}, expected {code}\n  output {got_output}, expected {output}\n"
          f"  messages {got_messages}, expected {message}")


def check_results():
    script = b'print("a\\n");\nprint(n);\nn = n + 1;\ns = "x\\r\\n";\n'
    values = ["--set", "n:int32=-2", "--set", "s:string=C:\\x", "--get", "n", "--get", "S"]
    expect(["run", "-"] + values, 0, b"a\n-2\nn=-1\nS=x\\r\\n\n", text=script)
    pathlib.Path("s.dcs").write_bytes(script)
    expect(["run", "s.dcs"] + values, 0, b"a\n-2\nn=-1\nS=x\\r\\n\n")
    expect(["run", "-"], 0)
    pathlib.Path("fails.dcs").write_bytes(b'print("a");\nx();')
    expect(["run", "fails.dcs"], 21, b"Unknown identifier near line 1/column 12 (offset 11) during parsing\n",
           b"fails.dcs: the script failed")
    expect(["run", ""], 6, message=b"the path of the script is empty")
    expect(["run", "none.dcs"], 8, message=b"none.dcs: the file cannot be opened")
    expect(["run", "s.dcs", "--fault", "Lock=1"] + values, 20, b"n=-2\nS=C:\\\\x\n", b"s.dcs: the channel is locked")
    expect(["run", "s.dcs", "--device-dir", "none/device"] + values, 4, message=b"cannot use the folder none/device")


def check_values():
    """Every type at its limits, in and out."""
    values = [("a:dword=0xffFFffFF", "a=4294967295"), ("_b1:uint32=0b101", "_b1=5"),
              ("c:long=-2147483648", "c=-2147483648"), ("d:int32=2147483647", "d=2147483647"),
              ("e:uint64=18446744073709551615", "e=18446744073709551615"),
              ("f:int64=-9223372036854775808", "f=-9223372036854775808"),
              ("g:String=", "g="), ("h:string=a=b:c", "h=a=b:c"), ("i:string= -1 ", "i= -1 ")]
    given = [word for value, _ in values for word in ("--set", value)]
    asked = [word for _, line in values for word in ("--get", line.partition("=")[0])]
    lines = "".join(line + "\n" for _, line in values)
    expect(["run", "-"] + given + asked, 0, lines.encode())
    expect(["run", "-", "--set", "s:string=", "--get", "s"], 0, rb's=12.5\r\n\t\\ \(x00)\(x1F)\(x7F)' + b'\xE4"\n',
           text=rb's = "12.5\r\n\t\\ \0\(31)\(127)\(xE4)\"";')


USAGE_ERRORS = [
    (["run"], b"FILE is required"),
    (["walk"], b"walk"),
    (["run", "a", "--set", "n:dword=-1"], b"--set n:dword=-1: -1 is not within 0 to 4294967295"),
    # What follows is the same code in both programs.
    (["run", "a", "b"], b"b"),
    (["run", "a", "--channel", "sin"], b'--channel: unknown channel "sin"'),
    (["run", "a", "--set", "[a:dword=1,b:dword=2]"], b"--set [a:dword=1,b:dword=2]: "),
    (["run", "a", "--set", "{}"], b"--set {}: "),
    (["run", "a", "--set", "count:dword=1", "--set", "COUNT:string=x"], b"--set COUNT:string=x: the variable is set twice"),
    (["run", "a", "--get", "n"], b"--get n: no --set gives this variable"),
    (["run", "a", "--fault", "Send=1"], b'--fault Send=1: unknown operation "Send"'),
    (["run", "a", "--block-time", "-1"], b"--block-time"),
    (["run", "a", "--block-time", "1s"], b"--block-time"),
    ([], b"--help"),
]
SET_ERRORS = {
    "": "expected NAME:TYPE=VALUE, as in count:dword=5",
    "a=1": "expected NAME:TYPE=VALUE, as in count:dword=5",
    "1a:dword=1": '"1a" is not a variable\'s name (letters, digits and _, no digit in front)',
    "while:dword=1": '"while" is a word of the language, not a variable\'s name',
    "a:int=1": 'unknown type "int"; there are dword, uint32, string, int32, long, uint64, int64',
    "a:dword=": '"" is not a number',
    "a:dword=0x": '"0x" is not a number',
    "a:dword=4294967296": "4294967296 is not within 0 to 4294967295",
    "a:int32=2147483648": "2147483648 is not within -2147483648 to 2147483647",
    "a:int64=9223372036854775808": "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807",
    "a:uint64=18446744073709551616": "18446744073709551616 is not within 0 to 18446744073709551615",
}
USAGE_ERRORS += [(["run", "a", "--set", text], f"--set {text}: {error}".encode()) for text, error in SET_ERRORS.items()]
# ondhost without a command opens its windows.
WINDOWS_ERRORS = [
    (["--fault", "Send=1"], b'--fault Send=1: unknown operation "Send"'),
    (["--device-dir", "d", "list"], b"options stand behind the command"),
]


def check_usage():
    for arguments, message in USAGE_ERRORS if name == "ondscript" else USAGE_ERRORS[:3] + WINDOWS_ERRORS:
        expect(arguments, 2, message=message)
    for arguments in (["--help"], ["run", "--help"]):
        code, output, messages = Call(arguments).end()
        check(" ".join(arguments), code == 0 and b"Examples:" in output and not messages, output)
    code, output, _ = Call(["--version"]).end()
    check("--version", code == 0 and output.startswith(name.encode() + b" "), output)


def check_device():
    expect(["run", "-", "--device-dir", "device"], 0, b"", text=b'transmitstring("dir\\n");')
    check("--device-dir makes the folder", pathlib.Path("device").is_dir())
    pathlib.Path("device/007-type2.bin").write_bytes(b"123456789")
    expect(["run", "-", "--device-dir", "device"], 0, b"CBF43926\r\n",
           text=b'var string s; transmitstring("crc 7\\n"); s = receivestring(); print(s);')
    if name == "ondscript":
        os.mkfifo("pipe")  # reading it would never end
        expect(["run", "-"], 0, b"\nLocal file cannot be read during TransmitFile (pipe)\n8",
               text=b'print(transmitfile("pipe", 1, 1, 0, 1));')


def check_streams():
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


def check_second_interrupt():
    """A run that cannot end, because nobody takes its output, is ended by the second Ctrl+C."""
    reading, writing = os.pipe()
    # Pieces of 8 KiB fill the pipe to the brim, so that the diagnostic finds no room either.
    call = Call(["run", "-"], b'var string s; var dword n; s = "01234567"; while (n < 10) { s = s + s; n = n + 1; }'
                b'while (1) { print(s); }', writing)
    deadline = time.monotonic() + TIMEOUT
    while select.select([], [writing], [], 0)[1] and time.monotonic() < deadline:
        time.sleep(0.01)
    check("the pipe is full", not select.select([], [writing], [], 0)[1])
    os.close(writing)
    deadline = time.monotonic() + TIMEOUT
    while call.process.poll() is None and time.monotonic() < deadline:
        call.process.send_signal(signal.SIGINT)
        time.sleep(0.2)  # signals that come together count once
    code, _, _ = call.end()
    # Wine passes on the last byte of what Windows calls an end by Ctrl+C, 0xC000013A.
    ended = -signal.SIGINT if name == "ondscript" else 0x3A
    check("the second Ctrl+C ends the process", code == ended, f"  exit code {code}")
    os.close(reading)


def check_full_output():
    with open("/dev/full", "wb") as full:
        code, _, messages = Call(["run", "-"], b'while (1) { print("x"); }', full).end()
    check("output that cannot be written", code == 5 and b"standard output cannot be written" in messages,
          f"  exit code {code}, messages {messages}")


def check_checker():
    pathlib.Path("good.dcs").write_bytes(b"N = 1; print(version, 1 / 0);\n")
    pathlib.Path("bad.dcs").write_bytes(b"var dword n;\nn = 1;\n  y = 2;\n")
    expect(["check", "good.dcs", "--set", "n:dword=0"], 0)
    expect(["check", "bad.dcs"], 1, b"bad.dcs:3:3: error: Unknown identifier\n")
    expect(["check", "-"], 1, b"<stdin>:1:1: error: Unknown identifier\n", text=b"z = 1;")
    expect(["check", "none.dcs", "bad.dcs"], 5, b"bad.dcs:3:3: error: Unknown identifier\n", b"none.dcs: the file cannot be read")
    for text, code, output in (
        # A note never decides: the first byte may be no token, or a zero byte that ends an empty script.
        (b'\xEF\xBB\xBFprint(1);', 1, b"1:1: note: the script begins with a byte-order mark; save it without one\n"
         b"<stdin>:1:1: error: Unexpected token\n"),
        ('print(1);'.encode("utf-16"), 1, b"1:1: note: the script is saved as UTF-16; it must be 8-bit text\n"
         b"<stdin>:1:1: error: Unexpected token\n"),
        ('print(1);'.encode("utf-16-be"), 0, b"1:1: note: the script is saved as UTF-16; it must be 8-bit text\n"),
        ('# 20 °C\nprint("#\\"20 °C");\n'.encode(), 0, b"2:14: note: this character is saved in UTF-8; Windows reads its "
         b"bytes in its own code page\n"),
        ('print(1); # 20 °C'.encode(), 0, b""),
        ('print("20 °C, µ"); # °'.encode("latin-1"), 0, b""),
        (b'print("\xC3\xA9 \xE9");', 0, b""),
    ):
        expect(["check", "-"], code, output and b"<stdin>:" + output, text=text)
    pathlib.Path("open.dcs").write_bytes(b"while (1) {\n  print(1);\n\n")
    expect(["check", "open.dcs"], 1, b"open.dcs:2:12: error: Unexpected token\n")
    os.mkfifo("fifo.dcs")
    expect(["check", "fifo.dcs"], 5, message=b"fifo.dcs: the file cannot be read: there is none, or it is no regular one")
    expect(["check", "/dev/zero"], 5, message=b"/dev/zero: the file cannot be read")
    with open("huge.dcs", "wb") as huge:
        huge.truncate(4 << 30)  # takes no room on the disk
    expect(["run", "huge.dcs"], 18, message=b"huge.dcs: out of memory")
    os.remove("huge.dcs")
    expect(["check"], 2, message=b"FILE is required")
    expect(["check", "good.dcs", "--set", "n"], 2, message=b"--set n: expected NAME:TYPE=VALUE")


def check_command_of_linux():
    script = pathlib.Path("command")
    script.write_bytes(b'#!/usr/bin/env -S ondscript run\nprint("as a command\\n");\n')
    script.chmod(0o755)
    path = f"{os.path.dirname(command[0])}:{os.environ['PATH']}"
    output = subprocess.run(["./command"], env={**os.environ, "PATH": path}, stdout=subprocess.PIPE, timeout=TIMEOUT).stdout
    check("a script with a first line for the system", output == b"as a command\n", output)


def check_questions():
    pathlib.Path("asks.dcs").write_bytes(b"""var dword ok;
print(userinputdword("Limits", "How many", 50, 10, 20), "\\n");
print(userinputstring("Name", "Who", "nobody"), "\\n");
print(userlistinput("Colour", "", "red\\0blue\\0", 1, &ok), ok, "\\n");
messagebox("Ready", "Go on");
print(userinputint32("End", "of input", -3, -5, 5, &ok), ok, "\\n");
""")
    expect(["run", "asks.dcs"], 0, b"12\nnobody\n01\n-30\n",
           b"How many [20]: Value must be <= 20\nHow many [20]: How many [20]: ", b"25\nabc\n12\n\n0\n\n")


name, *command = sys.argv[1:]
with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    check_results()
    check_values()
    check_usage()
    check_device()
    check_streams()
    check_second_interrupt()
    if name == "ondscript":
        check_full_output()
        check_checker()
        check_command_of_linux()
        check_questions()
    else:
        expect(["list"], 0, b"0x1000 Terminal\n0x1001 File Manager\n0x1002 Script Processor\n")
sys.exit(1 if failures else 0)
