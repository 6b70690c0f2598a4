#!/usr/bin/env python3
"""What a user and a production line see of a command line: exit codes, standard output byte for byte, what standard error says, the
files of the simulated device, the ways to start a script.
"""

import os
import pathlib
import pty
import re
import resource
import subprocess
import time

from calls import TIMEOUT, Call, check, command, expect, is_native, name, run_checks


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
    expect(["run", "-"], 5, message=b"standard input has a zero byte", text=b"print(1);\0")
    expect(["run", ""], 6, message=b"the path of the script is empty")
    expect(["run", "none.dcs"], 8, message=b"none.dcs: the file cannot be opened")
    expect(["run", "s.dcs", "--fault", "Lock=1"] + values, 20, b"n=-2\nS=C:\\\\x\n", b"s.dcs: the channel is locked")
    expect(["run", "s.dcs", "--device-dir", "none/device"] + values, 4, message=b"cannot use the folder none/device")
    if is_native:
        for baud in (300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 500000, 576000, 921600,
                     1000000, 1152000, 1500000, 2000000, 2500000, 3000000, 3500000, 4000000):
            expect(["run", "s.dcs", "--channel", f"serial:/dev/null:{baud}"] + values, 4,
                   message=b"/dev/null is not a serial port")
        expect(["run", "s.dcs", "--channel", "serial:/dev/null:9601"] + values, 4, message=b"no speed of 9601 baud")
        expect(["run", "s.dcs", "--channel", "serial:s.dcs:9600"] + values, 4, message=b"s.dcs is not a serial port")


def check_text():
    """A script on the command line itself."""
    first = ["-e", 'print("a\\n");']
    values = ["--set", "n:int32=-2", "--get", "n"]
    expect(["run", *first, *values, "-e", "n = n + 1; # a remark", "--channel", "sim", "-e", "n = n + 1;"], 0, b"a\nn=0\n")
    expect(["run", *first, "-e", "n = 1;"], 21, b"Unknown identifier near line 1/column 14 (offset 13) during parsing\n",
           b"<command line>: the script failed")
    pathlib.Path("beside.txt").write_text("here")
    expect(["run", "-e", 'print(readstringfromfile("beside.txt"));'], 0, b"here")
    expect(["run", *first, "s.dcs"], 2, message=b"-e and FILE")
    if name == "ondscript":
        expect(["-e", "print(-1);"], 0, b"-1")


def check_values():
    """Every type at its limits, in and out."""
    values = [("a:dword=0xffFFffFF", "a=4294967295"), ("_b1:uint32=0b101", "_b1=5"), ("aAzZ09:UINT32=+0B1", "aAzZ09=1"),
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
    (["run", "a", "--walk"], b"there is no option --walk;"),
    (["run", "--walk"], b"there is no option --walk;"),
    (["run", "--walk", "b", "a"], b"there is no option --walk;"),
    (["run", "a", "--set", "n:dword=-1"], b"--set n:dword=-1: -1 is not within 0 to 4294967295"),
    # What follows is the same code in both programs.
    (["run", "a", "--set", "[a:dword=1,b:dword=2]"], b"--set [a:dword=1,b:dword=2]: "),
    (["run", "a", "--set", "{}"], b"--set {}: "),
    (["run", "a", "--set", "count:dword=1", "--set", "COUNT:string=x"], b"--set COUNT:string=x: the variable is set twice"),
    (["run", "a", "--get", "n"], b"--get n: no --set gives this variable"),
    (["run", "a", "--device-dir", ""], b"--device-dir: the folder has no name"),
    (["run", "a", "--block-time", "1", "--block-time", "2"], b"--block-time is given more than once"),
    ([], b"--help"),
]
SET_ERRORS = {
    "": "expected NAME:TYPE=VALUE, as in count:dword=5",
    "a=1": "expected NAME:TYPE=VALUE, as in count:dword=5",
    "1a:dword=1": '"1a" is not a variable\'s name (letters, digits and _, no digit in front)',
    "while:dword=1": '"while" is a word of the language, not a variable\'s name',
    "a:int=1": 'unknown type "int"; there are dword, uint32, string, int32, long, uint64, int64',
    "a:dword=": '"" is not a number',
    "a:dword=1x": '"1x" is not a number',
    "a:dword=0x": '"0x" is not a number',
    "a:dword=4294967296": "4294967296 is not within 0 to 4294967295",
    "a:int32=2147483648": "2147483648 is not within -2147483648 to 2147483647",
    "a:int64=9223372036854775808": "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807",
    "a:uint64=18446744073709551616": "18446744073709551616 is not within 0 to 18446744073709551615",
}
CHANNEL_ERRORS = {
    "sin": '--channel: unknown channel "sin"; there are: sim[:FILE[,seed=N]], tcp:',
    "sim:": "expected sim[:FILE[,seed=N]]",
    "sim:,seed=1": "expected sim[:FILE[,seed=N]]",
    "sim:a,seed=-1": 'the seed "-1" is not a number from 0 to 4294967295',
    "tcp:bench": '"tcp:bench": expected tcp:HOST:PORT',
    "tcp::4000": "expected tcp:HOST:PORT",
    "tcp:[::1]": "expected tcp:HOST:PORT",
    "tcp:::1:4000": "an IPv6 address stands in brackets",
    "tcp:[::1:4000": "an IPv6 address stands in brackets",
    "tcp:::1]:4000": "an IPv6 address stands in brackets",
    "tcp:[]:4000": "an IPv6 address stands in brackets",
    "tcp:bench:0": 'the port "0" is not a number from 1 to 65535',
    "tcp:bench:65536": 'the port "65536" is not',
    "tcp:bench:80x": 'the port "80x" is not',
    "serial:COM3": '"serial:COM3": expected serial:PORT:BAUD',
    "serial:COM3:8N1": "expected serial:PORT:BAUD",
    "serial::9600": "expected serial:PORT:BAUD",
    "serial:COM3:9600:4N1": '"4N1" is neither a speed nor a format',
    "serial:COM3:9600:9N1": '"9N1" is neither',
    "serial:COM3:9600:8M1": '"8M1" is neither',
    "serial:COM3:9600:8N0": '"8N0" is neither',
    "serial:COM3:9600:8N3": '"8N3" is neither',
    "serial:COM3:9600:8N1x": '"8N1x" is neither',
    "serial:COM3:9600:": '"" is neither',
    "serial:COM3:x:8N1": 'the speed "x" is not a number',
    "serial:COM3:0": 'the speed "0" is not a number',
    "serial:COM3:4294967296": 'the speed "4294967296" is not a number',
}
FAULT_ERRORS = {
    "Lock": "expected OPERATION[:N]=CODE, as in TransmitFile:2=6",
    "Send=1": 'unknown operation "Send"; there are Lock, Unlock, ',
    "Lock:0=1": '"0" is not the number of a call (1, 2, ...)',
    "Lock:=1": '"" is not the number of a call',
    "Lock:1x=1": '"1x" is not the number of a call',
    "Lock=2147483648": '"2147483648" is not a code (-2147483648 to 2147483647)',
    "Lock:1=": '"" is not a code',
}
USAGE_ERRORS += [(["run", "-", "--channel", text], error.encode())
                 for text, error in CHANNEL_ERRORS.items()]
USAGE_ERRORS += [(["run", "a", "--fault", text], f"--fault {text}: {error}".encode()) for text, error in FAULT_ERRORS.items()]
USAGE_ERRORS += [(["run", "a", "--block-time", text], f"--block-time {text}: expected milliseconds, 0 to 60000".encode())
                 for text in ("-1", "1s", "60001", "")]
SET_ERRORS |= {f"a{sign}:dword=1": f'"a{sign}" is not a variable\'s name' for sign in "-/@[`{\xe4"}
USAGE_ERRORS += [(["run", "a", "--set", text], f"--set {text}: {error}".encode()) for text, error in SET_ERRORS.items()]
# ondhost without a command opens its windows.
WINDOWS_ERRORS = {"ondscript": [([], b"--help")], "ondhost": [
    (["--fault", "Send=1"], b'--fault Send=1: unknown operation "Send"'),
    (["--device-dir", "d", "list"], b"options stand behind the command"),
]}


def check_usage():
    for arguments, message in USAGE_ERRORS if is_native else USAGE_ERRORS[:3] + WINDOWS_ERRORS[name]:
        expect(arguments, 2, message=message)
    # Each command's help is its own: what it takes, and what it does not.
    helps = {"ondscript": [([], "check", "--set"), (["run"], "--block-time MS", "ondscript check"), (["check"], "--set", "--get")],
             "ondhost": [([], "--channel CHANNEL", "--get"), (["run"], "--get NAME", "ondhost list"), (["list"], "list", "--get")]}
    for words, told, untold in helps[name]:
        code, output, messages = Call(words + ["--help"]).end()
        output = output.decode()
        fits = "Examples:\n  " + " ".join([name] + words) in output and told in output and untold not in output
        check(" ".join(words + ["--help"]), code == 0 and fits and not messages, output)
    code, output, _ = Call(["--version"]).end()
    check("--version", code == 0 and output.startswith(name.encode() + b" "), output)


def check_device_file():
    def run(code, device, output=b"", message=b"", options=()):
        pathlib.Path("bench.sim").write_bytes(device)
        expect(["run", "-", "--channel", "sim:bench.sim", *options], code, output, message,
               text=b'transmitfilefromstring("a", 1, 1, 0); transmitstring("dir\\n"); print(receivestring());')

    full = b"#" * 40 + b" -> OK\n  1   1          1\r\n1 files, 2 of 3 blocks free\r\n"
    run(0, b"\xef\xbb\xbflike sim\r\nstore 3 blocks\r\nfolder \"kept\"\r\n", full)
    check("the folder of a device file", pathlib.Path("kept/001-type1.bin").read_bytes() == b"a")
    run(0, b'like sim\nstore 3 blocks\nfolder "unused"\n', full, options=["--device-dir", "kept"])
    check("--device-dir goes before the folder of a device file", not pathlib.Path("unused").exists())
    run(2, b"like sim\nanswer\nlike", message=b'--channel: bench.sim:2:7: expected "on", "otherwise", "every" or "at start" in a line '
        b'above this one\nbench.sim:3:5: expected "sim", found the end of the line\n')
    run(2, b"x\n" * 30, message=b'bench.sim:20:1: expected a statement, found "x"\n10 more lines are wrong\n')
    run(2, b"", message=b"bench.sim:1:1: expected a statement, found the end of the file: it describes no device\n")
    run(2, b"MZ\x90\0" * 1000, message=b"bench.sim:1:4: expected a plain text, found a zero byte")
    run(2, b"#" * (1 << 20) + b"\n", message=b"bench.sim: the file is too long for a description of a device\n")
    run(2, b'file 1 type 1 from "none"', message=b'bench.sim:1: "none" cannot be read\n')
    run(4, b'folder "bench.sim"', message=b"cannot use the folder bench.sim for the device's files")
    expect(["run", "-", "--channel", "sim:none.sim"], 4, message=b"none.sim: the file cannot be read\n")
    # A seed of its own each time, which is told and repeats the run.
    pathlib.Path("bench.sim").write_text("like sim\ndrop 10 %\n")
    script = b'transmitstring("help\\nhelp\\nhelp\\n"); print(receivestring());'
    _, output, messages = Call(["run", "-", "--channel", "sim:bench.sim"], script).end()
    seed = re.search(rb'"(sim:bench.sim,seed=\d+)" repeats', messages)
    check("the seed is told", seed, messages)
    check("the seed repeats the run", Call(["run", "-", "--channel", seed[1].decode()], script).end() == (0, output, messages), seed)


def check_device():
    expect(["run", "-", "--device-dir", "device"], 0, b"", text=b'transmitstring("dir\\n");')
    check("--device-dir makes the folder", pathlib.Path("device").is_dir())
    pathlib.Path("device/007-type2.bin").write_bytes(b"123456789")
    expect(["run", "-", "--device-dir", "device"], 0, b"CBF43926\r\n",
           text=b'var string s; transmitstring("crc 7\\n"); s = receivestring(); print(s);')
    # One block that takes its time.
    begin = time.monotonic()
    expect(["run", "-", "--block-time", "300"], 0, b"#" * 40 + b" -> OK\n", text=b'transmitfilefromstring("a", 1, 1, 0);')
    check("--block-time takes time", time.monotonic() - begin >= 0.3)
    if is_native:
        os.mkfifo("pipe")  # reading it would never end
        expect(["run", "-"], 0, b"\nLocal file cannot be read during TransmitFile (pipe)\n8",
               text=b'print(transmitfile("pipe", 1, 1, 0, 1));')
        check_foreign_files()


def check_foreign_files():
    """What stands in the device's folder under its names, but is not its own."""
    os.chmod(".", 0o755)  # for the user that nobody is, whom rights concern
    folder = pathlib.Path("foreign")
    folder.mkdir(mode=0o777)
    folder.chmod(0o777)
    (folder / "old.bin").write_bytes(b"old")
    (folder / "old.bin").chmod(0o666)
    (folder / "001-type1.bin").symlink_to("old.bin")
    os.mkfifo(folder / "001-type2.bin")
    (folder / "002-type1.bin").symlink_to("new.bin")
    os.mkfifo(folder / "003-type1.bin")
    (folder / "004-type1.bin").write_bytes(b"old")
    (folder / "004-type1.bin").chmod(0o444)
    (folder / "005-type1.bin").symlink_to("005-type1.bin")
    become_nobody = (lambda: os.setuid(65534)) if os.getuid() == 0 else None
    for file_id in range(1, 6):
        script = f'transmitfilefromstring("new", {file_id}, 1, 0);'.encode()
        code, output, _ = Call(["run", "-", "--device-dir", str(folder)], script, prepare=become_nobody).end()
        check(f"file {file_id}", code == (0 if file_id < 3 else 21), (code, output))
    check("a link's file is written", (folder / "old.bin").read_bytes() == b"new" and (folder / "001-type1.bin").is_symlink())
    check("or made", (folder / "new.bin").read_bytes() == b"new" and (folder / "002-type1.bin").is_symlink())
    check("pipes stay", (folder / "001-type2.bin").is_fifo() and (folder / "003-type1.bin").is_fifo())
    check("what may not be written stays", (folder / "004-type1.bin").read_bytes() == b"old")


def check_checker():
    pathlib.Path("good.dcs").write_bytes(b"N = 1; print(version, 1 / 0);\n")
    pathlib.Path("bad.dcs").write_bytes(b"var dword n;\nn = 1;\n  y = 2;\n")
    expect(["check", "good.dcs", "--set", "n:dword=0"], 0)
    unknown = b"error: Unknown identifier: `y` is not known here\n    %d | %by = 2;\n      | %b^\n      = declare it above, `var int32 y;` say; " \
        b"if the host sets it, write `# expects: y int32`\n"
    bad = b"bad.dcs:3:3: " + unknown % (3, b"  ", b"  ")
    expect(["check", "bad.dcs"], 1, bad)
    expect(["check", "-"], 1, b"<stdin>:1:1: " + unknown % (1, b"", b""), text=b"y = 2;")
    expect(["check", "none.dcs", "bad.dcs"], 5, bad, b"none.dcs: the file cannot be read")
    for text, code, output in (
        # A note never decides: the first byte may be no token, or a zero byte that ends an empty script.
        (b'\xEF\xBB\xBFprint(1);', 1, b"1:1: note: the script begins with a byte-order mark; save it without one\n"
         b"<stdin>:1:1: error: Unexpected token: "),
        ('print(1);'.encode("utf-16"), 1, b"1:1: note: the script is saved as UTF-16; it must be 8-bit text\n"
         b"<stdin>:1:1: error: Unexpected token: "),
        ('print(1);'.encode("utf-16-be"), 0, b"1:1: note: the script is saved as UTF-16; it must be 8-bit text\n"),
        ('# 20 °C\nprint("#\\"20 °C");\n'.encode(), 0, b"2:14: note: this character is saved in UTF-8; Windows reads its "
         b"bytes in its own code page\n"),
        ('print(1); # 20 °C'.encode(), 0, b""),
        ('print("20 °C, µ"); # °'.encode("latin-1"), 0, b""),
        (b'print("\xC3\xA9 \xE9");', 0, b""),
        (b'print("\0 \\"\0");\n \0 x(;', 0, b"2:2: note: the script ends here, at a zero byte\n"),
        (b'print("\xE9"); # \0 x(;', 0, b"1:15: note: the script ends here, at a zero byte\n"),
    ):
        got = Call(["check", "-"], text).end()
        fits = got[1].startswith(b"<stdin>:" + output) if output.endswith(b": ") else got[1] == (output and b"<stdin>:" + output)
        check(f"check of {text}", got[0] == code and fits and not got[2], got)
    pathlib.Path("open.dcs").write_bytes(b"while (1) {\n  print(1);\n\n")
    expect(["check", "open.dcs"], 1, b"open.dcs:2:12: error: Unexpected token: expected `}`: the block that begins in line 1 has no end\n"
           b"    1 | while (1) {\n      |           ^ the block begins here\n    2 |   print(1);\n      |            ^\n")
    check_expected_variables()
    if not is_native:
        return
    os.mkfifo("fifo.dcs")
    expect(["check", "fifo.dcs"], 5, message=b"fifo.dcs: the file cannot be read: there is none, or it is no regular one")
    expect(["check", "/dev/zero"], 5, message=b"/dev/zero: the file cannot be read")
    with open("huge.dcs", "wb") as huge:
        huge.truncate(4 << 30)  # takes no room on the disk
    expect(["run", "huge.dcs"], 18, message=b"huge.dcs: out of memory")
    expect(["check", "huge.dcs"], 5, message=b"huge.dcs: the file is too long for a script: 4 GiB or more")
    used = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    check("it is refused before it is read", used < 1 << 20, f"  {used} KiB of memory were used")
    os.remove("huge.dcs")
    expect(["check"], 2, message=b"FILE is required")
    expect(["check", "good.dcs", "--set", "n"], 2, message=b"--set n: expected NAME:TYPE=VALUE")


def check_expected_variables():
    """Remarks that tell which variables a script expects."""
    pathlib.Path("expects.dcs").write_bytes(b"#!/usr/bin/env ondscript\n# expects: limit int32\r\n  #expects:  unit  string \n\nprint(limit, unit);\n")
    expect(["check", "expects.dcs"], 0)
    expect(["run", "expects.dcs"], 2, message=b"expects.dcs: it expects a value: --set limit:int32=...; it expects a value: --set unit:string=...\n")
    expect(["run", "expects.dcs", "--set", "LIMIT:long=1", "--set", "unit:string=V"], 0, b"1V")
    expect(["run", "expects.dcs", "--set", "limit:dword=1", "--set", "unit:string=V"], 2,
           message=b"expects.dcs: it expects limit as int32, not dword\n")
    expect(["run", "-"], 2, message=b"<stdin>: it expects a value: --set a:dword=...\n", text=b"# expects: a dword\nprint(a);")
    for remark, line, reason in (("limit", 1, "expected a name and a type, as in `# expects: limit int32`"),
                                 ("limit int", 1, 'unknown type "int"; there are'), ("2nd int32", 1, '"2nd" is not a variable\'s name'),
                                 ("if int32", 1, '"if" is a word of the language'), ("a int32, b string", 1, 'unknown type "int32, b string"'),
                                 ("a int32\n# expects: A string", 2, '"A" is expected twice')):
        code, output, _ = Call(["check", "-"], f"# expects: {remark}\n".encode()).end()
        check(f"expects: {remark}", code == 1 and output.startswith(f"<stdin>:{line}:1: error: {reason}".encode()), output)
    code, output, _ = Call(["check", "-"], b'print(1);\nprint("# expects: a int32"); # expects: b int32\n # expects: c int32').end()
    check("expects behind a statement", code == 1 and output.startswith(b"<stdin>:3:2: error: this remark must stand in front"), output)


def check_messages_on_a_terminal():
    """Colours for a terminal only, and only where they are wanted."""
    pathlib.Path("unknown.dcs").write_bytes(b"\t# \xB0\n\tx = 1; # \xB0 \x1B[2J " + b"." * 300)
    for environment, coloured in (({"TERM": "xterm"}, True), ({"TERM": "dumb"}, False), ({"TERM": "xterm", "NO_COLOR": "1"}, False), ({}, False)):
        terminal, other_end = pty.openpty()
        subprocess.run([*command, "check", "unknown.dcs"], stdout=other_end, env=environment, timeout=TIMEOUT)
        os.close(other_end)
        said = os.read(terminal, 65536).replace(b"\r\n", b"\n")
        os.close(terminal)
        check(f"colours with {environment}", (b"\x1B" in said) == coloured, said)
    expect(["check", "unknown.dcs"], 1, "unknown.dcs:2:2: error: Unknown identifier: `x` is not known here\n"
           "    2 | \tx = 1; # ° ?[2J ".encode() + b"." * 37 + b"\n      | \t^\n"
           b"      = declare it above, `var int32 x;` say; if the host sets it, write `# expects: x int32`\n")


def check_starts():
    """A script in place of a command, its first line, and names that look like a drive."""
    text = b'#!/usr/bin/env ondscript\nprint("started\\n");\n'
    for file in ("starts.dcs", "x:y.dcs", "z:y.dcs"):
        pathlib.Path(file).write_bytes(text)
        expect([file], 0, b"started\n")
        expect(["run", file, "--set", "n:dword=1", "--get", "n"], 0, b"started\nn=1\n")
        expect(["check", file, "starts.dcs"], 0)
    expect(["--set", "n:dword=1", "starts.dcs", "--get", "n"], 0, b"started\nn=1\n")
    expect(["-"], 0, b"a", text=b'print("a");')
    expect(["walk"], 8, message=b"walk: the file cannot be opened")
    pathlib.Path("starts.dcs").chmod(0o755)
    path = f"{pathlib.Path(command[0]).resolve().parent}:{os.environ['PATH']}"
    run = subprocess.run(["./starts.dcs", "--set", "n:int32=-1", "--get", "n"], env={**os.environ, "PATH": path},
                         capture_output=True, timeout=TIMEOUT)
    check("./starts.dcs", run.returncode == 0 and run.stdout == b"started\nn=-1\n", run)


def check_list():
    expect(["list"], 0, b"0x1000 Terminal\n0x1001 File Manager\n0x1002 Script Processor\n")


run_checks(check_results, check_text, check_values, check_usage, check_device, check_device_file,
           *([check_list] if name == "ondhost" else [check_checker]), *([check_messages_on_a_terminal, check_starts] if is_native else []))
