#!/usr/bin/env python3
"""Tapes from outside, recorded and played:  check_replay.py NAME COMMAND..."""

import json
import pathlib
import socket
import time
import zlib

from calls import *

TALK = b'transmitstring("id\\r"); print(receivestring()); transmitstring("adc 1\\r"); print(receivestring());'
WAITING = b"""func listen(var dword pauses) {
  var string heard;
  while ((strlen(heard) == 0) & (pauses > 0)) {
    delay(5);
    pauses -= 1;
    heard = receivestring();
    print(".");
  }
  print(heard, pauses, "\\n");
}
transmitstring("slow\\r");
listen(200);
transmitstring("mute\\r");
listen(3);
"""
FILES = b"""print(transmitfile("a.bin", 1, 2, 0, 1), transmitfilefromstring("abc", 2, 2, 0, 1), "\\n");
"""


# Answers the first question in two pieces, and no other.
SLOW = r"""on "slow"
  send "one, " after 150 ms
  send "two\r\n" after 3 ms
"""
# Answers and is gone.
CURT = r"""cut after 5 bytes from device
on "a"
  answer "bye"
"""


def record(script, options, tape):
    """The exit code and output of a run that is recorded."""
    code, output, _ = Call(["run", script, *options, "--trace", tape]).end()
    return code, output


def lines_of(tape):
    return pathlib.Path(tape).read_text().splitlines()


def save(tape, lines):
    pathlib.Path(tape).write_text("".join(line + "\n" for line in lines))


def index_of(lines, text):
    return next(i for i, line in enumerate(lines) if text in line)


def check_same():
    """Same script, same tape: same output and code, however the device behaved; and the same trace again."""
    pathlib.Path("talk.dcs").write_bytes(TALK)
    pathlib.Path("waiting.dcs").write_bytes(WAITING)
    pathlib.Path("files.dcs").write_bytes(FILES)
    pathlib.Path("empty.dcs").write_bytes(b"")
    pathlib.Path("a.bin").write_bytes(b"\0" * 2000)
    pathlib.Path("more.dcs").write_bytes(b'transmitstring("a\\n");print(receivestring()); while (1 == 1) { delay(5); print(receivestring()); }')

    def expect_same(script, options, tape, code, modes=("", ",loose", ",times")):
        recorded = record(script, options, tape)
        check(f"recording {tape}", recorded[0] == code, recorded)
        for mode in modes:
            got = record(script, ["--channel", f"replay:{tape}{mode}"], "again.jsonl")
            check(f"{tape}{mode}", got == recorded, f"{got}\n{recorded}")
            if mode == "":
                once, again = ([(line.get("op"), line.get("hex"), line.get("result")) for line in map(json.loads, lines_of(path)[1:-1])
                                if "op" in line and line["op"] != "GetInfoString"] for path in (tape, "again.jsonl"))
                check(f"{tape}: the trace of the replay", once == again, f"{once}\n{again}")

    expect_same("talk.dcs", [], "talk.jsonl", 0)
    # Several scripts of one call are on one tape.
    two = record("talk.dcs", ["talk.dcs"], "two.jsonl")
    check("two scripts", two[0] == 0 and record("talk.dcs", ["talk.dcs", "--channel", "replay:two.jsonl"], "again.jsonl") == two, two)
    expect_same("talk.dcs", ["--fault", "Receive:1=9"], "faulty.jsonl", 0)
    expect_same("files.dcs", [], "files.jsonl", 0)
    expect_same("files.dcs", ["--fault", "TransmitFile=6"], "full.jsonl", 0)
    pathlib.Path("slow.sim").write_text(SLOW)
    expect_same("waiting.dcs", ["--channel", "sim:slow.sim"], "waiting.jsonl", 0, [""])
    # With its times, the device is as slow as it was; a loose one never is.
    start = time.monotonic()
    code, output = record("waiting.dcs", ["--channel", "replay:waiting.jsonl,times"], "again.jsonl")
    check("original times", code == 0 and output.count(b".") > 10 and b"one, two\r\n" in output and
          time.monotonic() - start > 0.15, (code, output))
    expect(["run", "waiting.dcs", "--channel", "replay:waiting.jsonl,loose"], 0, b".one, two\r\n199\n...0\n")
    pathlib.Path("curt.sim").write_text(CURT)
    expect_same("more.dcs", ["--channel", "sim:curt.sim"], "cut.jsonl", 4, ["", ",times"])
    # A device that was never there.
    gone = socket.create_server(("127.0.0.1", 0))
    channel = f"tcp:127.0.0.1:{gone.getsockname()[1]}"
    gone.close()
    code, output, messages = Call(["run", "talk.dcs", "--channel", channel, "--trace", "gone.jsonl"]).end()
    told = messages.replace(channel.encode(), b"CHANNEL")
    check("no device", code == 4 and not output and told.startswith(name.encode() + b": CHANNEL: "), (code, output, messages))
    for mode in ("", ",loose"):
        expect(["run", "talk.dcs", "--channel", f"replay:gone.jsonl{mode}"], 4,
               message=told.replace(b"CHANNEL", f"replay:gone.jsonl{mode}".encode()))


def check_contents():
    """A local file is the same when its bytes are; tapes that do not know them, and files that are too large, go by its name."""
    pathlib.Path("send.dcs").write_bytes(b'print(transmitfile("a.bin", 1, 2, 0, 1), transmitfilefromstring("abc", 2, 2, 0, 1), "\\n");')
    pathlib.Path("a.bin").write_bytes(b"123456789")
    recorded = record("send.dcs", [], "send.jsonl")
    lines = lines_of("send.jsonl")
    contents = [(call["size"], call["crc32"]) for call in map(json.loads, lines) if call.get("op", "").startswith("TransmitFile")]
    check("contents", recorded == (0, recorded[1]) and contents == [(9, "CBF43926"), (3, "352441C2")], (recorded, contents))
    sent = index_of(lines, '"CBF43926"')
    save("old.jsonl", lines[:sent] + [lines[sent].replace('"size":9,"crc32":"CBF43926",', "")] + lines[sent + 1:])
    check("a tape without them", '"size"' not in lines_of("old.jsonl")[sent])
    for changed, seen in ((b"12345678X", b", 9 bytes with CRC-32 F14168E8\n"), (b"1234567890", b", 10 bytes with CRC-32 261DAEE5\n"),
                          (None, b"steps 40\n")):
        if changed:
            pathlib.Path("a.bin").write_bytes(changed)
        else:
            pathlib.Path("a.bin").unlink()
        expect(["run", "send.dcs", "--channel", "replay:old.jsonl"], 0, recorded[1])
        code, _, messages = Call(["run", "send.dcs", "--channel", "replay:send.jsonl"]).end()
        tape, run = messages.partition(b"\n  tape: ")[2].split(b"\n  run:  ")
        check("another file", code == 4 and tape.endswith(b'a.bin" id 1 type 2 mode 0 steps 40, 9 bytes with CRC-32 CBF43926') and
              run.endswith(seen), (code, messages))
    for size in (64 * 1024 * 1024, 64 * 1024 * 1024 + 1):
        with open("a.bin", "wb") as file:
            file.truncate(size)
        code, _ = record("send.dcs", [], "send.jsonl")
        call = next(call for call in map(json.loads, lines_of("send.jsonl")) if call.get("op") == "TransmitFile")
        check("a large file", code == 0 and (call.get("size"), call.get("crc32")) ==
              ((size, "%08X" % zlib.crc32(bytes(size))) if size == 64 * 1024 * 1024 else (None, None)), call)


def expect_difference(script, tape, message, code=4):
    """The run ends with a message that shows both sides."""
    got_code, _, messages = Call(["run", "-", "--channel", f"replay:{tape}"], script).end()
    messages = messages.replace(b"\r\n", b"\n")
    check(f"{script} on {tape}", got_code == code and message in messages, f"{got_code}\n{messages.decode()}\n{message.decode()}")


def check_differences():
    record("talk.dcs", [], "talk.jsonl")
    lines = lines_of("talk.jsonl")
    line = index_of(lines, '"adc 1.') + 1
    where = f"talk.jsonl:{line}: the run %s at record {line - 1}\n".encode()
    differs, ended = where % b"differs from the tape", where % b"has ended, and the tape goes on"
    tape = b'  tape: Transmit "adc 1\\r"\n'
    expect_difference(TALK.replace(b"adc 1", b'a\\"\\\\\\(x07)'), "talk.jsonl", differs + tape + b'  run:  Transmit "a\\"\\\\\\(x07)\\r"\n')
    expect_difference(TALK.replace(b"adc 1", b"adc 1" * 20), "talk.jsonl",
                      differs + tape + b'  run:  Transmit 101 bytes, from byte 0 on "adc 1adc 1')
    expect_difference(TALK[:TALK.index(b'transmitstring("adc')], "talk.jsonl", ended + tape + b"  run:  nothing more\n")
    expect_difference(TALK + TALK, "talk.jsonl",
                      b'talk.jsonl: the tape has ended, and the run goes on\n  tape: nothing more\n  run:  Transmit "id\\r"\n')
    expect_difference(b"print(receivestring());", "talk.jsonl", b'  tape: Transmit "id\\r"\n  run:  Receive\n')
    record("empty.dcs", [], "silent.jsonl")
    expect_difference(b"while (1 == 1) { print(receivestring()); }", "silent.jsonl", b"  tape: nothing more\n  run:  Receive\n")
    record("files.dcs", [], "files.jsonl")
    expect_difference(b'print(transmitfile("a.bin", 1, 3, 0, 1));', "files.jsonl",
                      b'a.bin" id 1 type 2 mode 0 steps 40\n  run:  TransmitFile "')
    # What is sent where nobody reads counts, and what the device says where nobody asks does not get lost unnoticed.
    expect_difference(b'transmitstring("id\\r");transmitstring("adc 1\\r");', "talk.jsonl",
                      b'tape: Receive, which found "simulated device, serial number 1\\r\\n"\n  run:  Transmit "adc 1\\r"\n')


def check_edited():
    """Tapes that were changed, cut off or are none."""
    lines = lines_of("talk.jsonl")
    answer = index_of(lines, '"850.')
    save("edited.jsonl", lines[:answer] + [lines[answer].replace("383530", "373737")] + lines[answer + 1:])
    expect(["run", "talk.dcs", "--channel", "replay:edited.jsonl"], 0, b"simulated device, serial number 1\r\n777\r\n")
    pathlib.Path("short.jsonl").write_text("\n".join(lines[:answer + 1])[:-30])
    expect(["run", "talk.dcs", "--channel", "replay:short.jsonl"], 4, b"simulated device, serial number 1\r\n",
           f"short.jsonl:{answer + 1}: the last line is cut off, and skipped".encode())
    save("broken.jsonl", lines[:answer] + ["{}"] + lines[answer:])
    for tape, message in {"broken.jsonl": f"broken.jsonl:{answer + 1}: neither a header", "talk.dcs": "talk.dcs:1: not a trace: column ",
                          "none": "cannot play none: "}.items():
        expect(["run", "talk.dcs", "--channel", f"replay:{tape}"], 4, message=message.encode())
    expect(["run", "talk.dcs", "--channel", "replay:,loose"], 2, message=b'"replay:,loose": expected replay:FILE[,loose][,times]')
    expect(["run", "talk.dcs", "--channel", "replay:talk.jsonl", "--trace", "talk.jsonl"], 5,
           message=b"cannot write the trace talk.jsonl: it is in use")
    check("a tape that was to be its own trace", lines_of("talk.jsonl") == lines)


def check_loose():
    """Each call is answered by the next of its kind, from the beginning if need be; a call that is not there by nothing."""
    expect(["run", "-", "--channel", "replay:talk.jsonl,loose"], 0, b"850\r\n|simulated device, serial number 1\r\n||850\r\n",
           text=b'func ask(var string q) { transmitstring(q + "\\r"); ask = receivestring(); }\n'
                b'print(ask("adc 1"), "|", ask("id"), "|", ask("adc 2"), "|", ask("adc 1"));')


run_checks(check_same, check_contents, check_differences, check_edited, check_loose)
