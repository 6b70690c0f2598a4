#!/usr/bin/env python3
"""`--trace`, `trace show` and `trace export` from outside:  check_trace.py NAME COMMAND..."""

import calendar
import json
import pathlib
import struct
import subprocess
import time

from calls import *

TALK = b'print(executesubscriptfunc("ask.dcs", "ask", "echo one"));'
ASK = b"""func ask(var string question) {
  transmitstring(question + "\\r");
  ask = receivestring();
}
"""
HEADER = '{"schema":"ond-trace","version":1,"start":"2026-01-31T23:59:59.500000Z","channel":"tcp:bench:1","program":"p 1"}'
BENCH = [
    HEADER,
    '{"t":10,"op":"Lock","owner":1,"timeout":500,"result":0,"us":8}',
    '{"t":1000,"op":"Transmit","owner":1,"hex":"69640D","ascii":"id.","result":0,"us":100}',
    '{"t":2000,"op":"Receive","owner":1,"hex":"","result":0,"us":1}',
    '{"t":20000,"op":"Receive","owner":1,"hex":"4f6e652c20","result":0,"us":1}',
    '{"t":39000,"op":"Receive","owner":1,"hex":"74776f2c20616e64206d6f7265210a","result":0,"us":1,"new":[{}]}',
    '{"t":500000,"op":"Receive","owner":1,"hex":"FF","result":0,"us":1}',
    '{"t":500010,"op":"TransmitFile","owner":1,"path":"Z:\\\\a.bin","id":1,"type":2,"mode":0,"steps":40,"size":5,"crc32":"0a1B2c3D",'
    '"result":6,"us":9}',
    '{"t":600000,"event":"question","caption":"Part","answer":"A17"}',
    '{"t":1700000,"op":"Unlock","owner":1,"result":0,"us":2}',
    '{"t":1700100,"event":"end","cpu":"200000"}',
]
SHOWN = b"""2026-01-31T23:59:59.500000Z  p 1 on tcp:bench:1
    0.000010  Lock timeout 500
    0.001000  > 3 bytes
    69 64 0D                                         id.
    0.020000  < 20 bytes
    4F 6E 65 2C 20 74 77 6F 2C 20 61 6E 64 20 6D 6F  One, two, and mo
    72 65 21 0A                                      re!.
    0.500000  < 1 byte
    FF                                               .
    0.500010  TransmitFile "Z:\\a.bin" id 1 type 2 mode 0 steps 40, 5 bytes with CRC-32 0A1B2C3D failed: 6 (Device full)
    0.600000  * question caption "Part" answer "A17"
    1.700000  Unlock
    1.700100  * end cpu "200000"

calls      8: Lock 1, Unlock 1, Receive 4 (1 found nothing), Transmit 1, TransmitFile 1; 1 failed
sent       3 bytes
received   21 bytes
time       1.700 s, 0.000 s of it in these calls
computing  0.200 s, waiting 1.500 s
"""
END = b"computing  0.200 s, waiting 1.500 s\n"
FILTERED = {
    ("--only", "sent", "--times", "absolute"): b"""2026-01-31T23:59:59.500000Z  p 1 on tcp:bench:1
2026-01-31T23:59:59.501000Z  > 3 bytes
    69 64 0D                                         id.
2026-02-01T00:00:00.000010Z  TransmitFile "Z:\\a.bin" id 1 type 2 mode 0 steps 40, 5 bytes with CRC-32 0A1B2C3D failed: 6 (Device full)

calls      2: Transmit 1, TransmitFile 1; 1 failed
sent       3 bytes
received   0 bytes
time       1.700 s, 0.000 s of it in these calls
""" + END,
    ("--only", "received", "--only", "events", "--times", "last", "--gap", "18"): b"""2026-01-31T23:59:59.500000Z  p 1 on tcp:bench:1
   +0.020000  < 5 bytes
    4F 6E 65 2C 20                                   One,\x20
   +0.019000  < 15 bytes
    74 77 6F 2C 20 61 6E 64 20 6D 6F 72 65 21 0A     two, and more!.
   +0.461000  < 1 byte
    FF                                               .
   +0.100000  * question caption "Part" answer "A17"
   +1.100100  * end cpu "200000"

calls      4: Receive 4 (1 found nothing)
sent       0 bytes
received   21 bytes
time       1.700 s, 0.000 s of it in these calls
""" + END,
}
# What a second or third line must not be, and what is said about it.
BAD_LINES = {
    '{"t":1,': "column 8: ",
    "[1]": "not a JSON object",
    "{}": 'neither a header ("schema"), nor a call ("op"), nor an event ("event")',
    HEADER: "a second header: two traces are no trace",
    '{"t":1,"op":"Shout"}': 'unknown operation "Shout"',
    '{"t":1,"op":"Unlock","owner":1,"us":2}': '"result" is missing',
    '{"t":-1,"op":"Unlock","owner":1,"result":0,"us":2}': '"t" is not a whole number that is not negative',
    '{"t":1,"op":"Lock","owner":1,"timeout":"1","result":0,"us":2}': '"timeout" is not a whole number',
    '{"t":1,"op":"Receive","owner":1,"hex":"414","result":0,"us":2}': '"hex" is not pairs of hexadecimal digits',
    '{"t":1,"op":"Receive","owner":1,"hex":"4x","result":0,"us":2}': '"hex" is not pairs of hexadecimal digits',
    '{"t":1,"op":"TransmitFile","owner":1,"path":"","id":1,"type":2,"mode":0,"steps":4,"size":1,"crc32":"CBF4392","result":6,"us":9}':
        '"crc32" is not eight hexadecimal digits',
    '{"t":1,"op":"TransmitFile","owner":1,"path":"","id":1,"type":2,"mode":0,"steps":4,"crc32":"CBF43926","result":6,"us":9}':
        '"size" is missing',
    '{"t":1,"op":"TransmitFile","owner":1,"path":"","id":1,"type":2,"mode":0,"steps":4,"progress":[0,-1],"result":6,"us":9}':
        '"progress" is not a list of whole numbers',
    '{"t":1,"event":7}': '"event" is not a text',
    '"' + "[" * 100000: "column ",
}
BAD_FILES = {
    "": "not a trace: the file is empty",
    "print(1);\n": "1: not a trace: column 1: ",
    '{"a":1}\n': '1: not a trace: neither a header',
    BENCH[1] + "\n": '1: not a trace: the first line is no header ("schema")',
    HEADER.replace("ond-trace", "har") + "\n": '1: not a trace: "schema" is not "ond-trace"',
    HEADER.replace(":1,", ":2,") + "\n": "1: not a trace: version 2 of the format, where this program knows version 1",
    HEADER.replace("01-31", "02-31") + "\n": '1: not a trace: "start" is not a time',
    HEADER[:50]: "1: not a trace: column 51: ",
}


def records(path):
    return [json.loads(line) for line in pathlib.Path(path).read_text().splitlines()]


def save(path, lines):
    pathlib.Path(path).write_text("".join(line + "\n" for line in lines))


def check_run():
    """What a run writes; an older trace is replaced, another file is not."""
    pathlib.Path("talk.dcs").write_bytes(TALK)
    pathlib.Path("ask.dcs").write_bytes(ASK)
    for _ in range(2):
        expect(["run", "talk.dcs", "--trace", "t.jsonl", "--fault", "Lock:2=0"], 0, b"one\r\n")
        header, *lines = records("t.jsonl")
        check("the header", header["schema"] == "ond-trace" and header["version"] == 1 and header["channel"] == "sim", header)
        heard = "".join(line["hex"] for line in lines if line.get("op") == "Receive")
        sent = [(line["hex"], line["ascii"], line["result"]) for line in lines if line.get("op") == "Transmit"]
        check("bytes", bytes.fromhex(heard) == b"one\r\n" and sent == [(b"echo one\r".hex().upper(), "echo one.", 0)], lines)
        times = [line["t"] for line in lines]
        check("times", times == sorted(times) and all(line["us"] >= 0 for line in lines[1:-1]), times)
        check("the connection", (lines[0]["event"], set(lines[0])) == ("opened", {"t", "event"}), lines[0])
        check("owners", {line["owner"] for line in lines[1:-1]} == {1}, lines)
        least = 0 if name == "ondhost" else 1  # Windows counts in ticks of 10 ms and more
        check("the end", lines[-1]["event"] == "end" and int(lines[-1]["cpu"]) >= least, lines[-1])
    expect(["run", "talk.dcs", "--trace", "ask.dcs"], 5, message=b"ask.dcs is not a trace, and is not replaced by one")
    check("another file", pathlib.Path("ask.dcs").read_bytes() == ASK)
    expect(["run", "talk.dcs", "--trace", "none/t.jsonl"], 5, message=b"cannot write the trace none/t.jsonl: ")
    expect(["run", "talk.dcs", "--trace", ""], 2, message=b"--trace: the file has no name")


def wait_for(what, condition):
    deadline = time.monotonic() + TIMEOUT
    while not condition():
        if time.monotonic() > deadline:
            check("waited for " + what, False)
            return False
        time.sleep(0.05)
    return True


def check_while_running():
    """A second run on the same file is refused; what is older than a second is in the file, whatever comes."""
    path = pathlib.Path("long.jsonl")
    call = Call(["run", "-", "--trace", str(path)], b'while (1 == 1) { transmitstring("x"); delay(20); }')
    try:
        if wait_for("the first records", lambda: path.exists() and path.read_text().count("\n") > 5):
            expect(["run", "talk.dcs", "--trace", str(path)], 5,
                   message=b"cannot write the trace long.jsonl: it is in use")
            for _ in range(3):
                now = time.time()
                lines = path.read_text().splitlines()
                start = time.strptime(json.loads(lines[0])["start"][:19], "%Y-%m-%dT%H:%M:%S")
                passed = now - calendar.timegm(start)
                written = json.loads(lines[-1] if lines[-1].endswith("}") else lines[-2])["t"] / 1e6
                # The header's second is cut off above, and the machine may be busy.
                check("what is older than a second is written", passed - written < 1 + 1 + 1, (passed, written))
                time.sleep(0.3)
    finally:
        call.process.kill()
        call.end()
    if name == "ondscript":
        with path.open("a") as file:
            file.write('{"t":17,"op":"Rece')
        lines = path.read_text().count("\n")
        code, output, messages = Call(["trace", "show", str(path), "--only", "Lock"]).end()
        check("a trace of a killed run", code == 0 and b"computing  not known: the trace was cut off\n" in output and
              messages == f"ondscript: long.jsonl:{lines + 1}: the last line is cut off, and skipped\n".encode(),
              (code, output, messages))
        code, output, messages = Call(["run", "talk.dcs", "--trace", "/dev/full"]).end()
        check("a full disk", code == 0 and output == b"one\r\n" and messages == b"ondscript: the trace /dev/full cannot be "
              b"written any more: No space left on device; the run goes on without it\n", (code, output, messages))


def check_show():
    save("bench.jsonl", BENCH)
    expect(["trace", "show", "bench.jsonl"], 0, SHOWN)
    for options, shown in FILTERED.items():
        expect(["trace", "show", "bench.jsonl", *options], 0, shown)
    pathlib.Path("bench.jsonl").write_text("\ufeff" + "\r\n\r\n".join(BENCH))  # as an editor may leave it
    expect(["trace", "show", "bench.jsonl"], 0, SHOWN)
    expect(["trace", "show", "none"], 5, message=b"none: the file cannot be read")
    expect(["trace", "show", "bench.jsonl", "--only", "shouts"], 2, message=b"--only shouts: there are sent, received, events, Get")
    expect(["trace", "show", "bench.jsonl", "--times", "then"], 2, message=b"--times then: there are absolute, start, last")
    expect(["trace", "show", "bench.jsonl", "--gap", "-1"], 2, message=b"--gap -1: expected milliseconds, 0 to 3600000")
    expect(["trace"], 2, message=b"ubcommand")


def blocks_of(capture):
    """(type, body) of each block of a pcapng file."""
    while capture:
        kind, length = struct.unpack_from("<II", capture)
        assert length % 4 == 0 and struct.unpack_from("<I", capture, length - 4) == (length,), (kind, length)
        yield kind, capture[8:length - 4]
        capture = capture[length:]


def check_export():
    """The capture as the format's own description reads it, and as an analyser does."""
    long = 'F' * 2 * 70000
    save("bench.jsonl", BENCH[:-1] + [f'{{"t":1700050,"op":"Transmit","owner":1,"hex":"{long}","result":0,"us":100}}'])
    expect(["trace", "export", "bench.jsonl", "bench.pcapng"], 0)
    blocks = list(blocks_of(pathlib.Path("bench.pcapng").read_bytes()))
    check("the head of a capture", [kind for kind, _ in blocks] == [0x0A0D0D0A, 1] + [6] * 10 and
          blocks[0][1][:4] == b"\x4d\x3c\x2b\x1a" and blocks[1][1][0] == 147, blocks[:2])
    packets = [(high << 32 | low, body[20:20 + size]) for _, body in blocks[2:]
               for high, low, size in [struct.unpack_from("<III", body, 4)]]
    start = 1769903999500000
    expected = [(10, b""), (1000, b"id\r"), (20000, b"One, "), (39000, b"two, and more!\n"), (500000, b"\xff"), (500010, b""),
                (600000, b""), (1700000, b""), (1700050, b"\xff" * 65535), (1700050, b"\xff" * 4465)]
    check("the packets", packets == [(start + time, data) for time, data in expected], packets)
    fields = ["frame.time_epoch", "frame.packet_flags_direction", "data.data", "frame.comment"]
    shown = subprocess.run(["tshark", "-r", "bench.pcapng", "-T", "fields", *(f"-e{field}" for field in fields)],
                           stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=TIMEOUT, check=False)
    lines = shown.stdout.decode().splitlines()
    check("an analyser", len(lines) == 10 and lines[1] == "1769903999.501000000\t0x00000002\t69640d\tTransmit" and
          lines[4] == "1769904000.000000000\t0x00000001\tff\tReceive" and "failed: 6 (Device full)" in lines[5],
          shown.stdout.decode()[:2000] + shown.stderr.decode())
    expect(["trace", "export", "bench.jsonl", "bench.jsonl"], 5, message=b"bench.jsonl is not a capture, and is not replaced by one")
    expect(["trace", "export", "bench.jsonl", "none/bench.pcapng"], 5, message=b"none/bench.pcapng: the file cannot be written")
    expect(["trace", "export", "none", "bench.pcapng"], 5, message=b"none: the file cannot be read")


def check_bad_traces():
    for text, message in BAD_FILES.items():
        pathlib.Path("bad.jsonl").write_text(text)
        expect(["trace", "show", "bad.jsonl"], 5, message=("bad.jsonl:" + (" " if not text else "") + message).encode())
    for line, message in BAD_LINES.items():
        save("bad.jsonl", BENCH[:2] + [line] + BENCH[2:])
        expect(["trace", "show", "bad.jsonl"], 5, message=f"bad.jsonl:3: {message}".encode())


run_checks(check_run, check_while_running, check_show, check_export, check_bad_traces)
