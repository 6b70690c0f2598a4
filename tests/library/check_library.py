#!/usr/bin/env python3
"""The script library against what Python makes of the same input, and on devices behind TCP:  check_library.py LIB ONDSCRIPT

CRCs are checked by zlib, binascii and long division, lists and fields by Python's own. The devices answer late, in pieces, wrongly
or not at all.
"""

import binascii
import csv
import decimal
import pathlib
import random
import re
import shutil
import sys
import tempfile
import time
import zlib

tests = pathlib.Path(__file__).resolve().parent.parent
sys.path += [str(tests), str(tests / "channels")]
import expect  # noqa: E402
import peers  # noqa: E402

problems = []


def quoted(text):
    """A string literal of the language; references as they are, numbers through a text, which has all of their range."""
    if isinstance(text, str):
        return text
    if isinstance(text, int):
        return f'strto{"uint64" if text > 0 else "int64"}("{text}")'
    return '"' + "".join(chr(b) if 32 <= b < 127 and b not in b'"\\' else f"\\({b})" for b in text) + '"'


def call(file, function, *arguments):
    return f'executesubscriptfunc("lib\\\\{file}.dcs", "{function}"' + "".join(", " + quoted(a) for a in arguments) + ")"


def run(script, *options):
    return expect.run([ondscript, "run", "-", *options], folder, script.encode())


def check(what, got, wanted):
    if got != wanted:
        problems.append(f"{what}: {got!r:.600}, expected {wanted!r:.600}")


# What the library computes, beside what Python does


def reversed_bits(number, count):
    return int(f"{number:0{count}b}"[::-1], 2)


def crc16(data, polynomial, start, reflected, final):
    """The remainder of one long division."""
    bits = bytes(reversed_bits(byte, 8) for byte in data) if reflected else data
    rest = int.from_bytes(bits + b"\0\0", "big") ^ (start << (8 * len(data)))
    for position in range(8 * len(data) + 15, 15, -1):
        if rest >> position & 1:
            rest ^= (0x10000 | polynomial) << (position - 16)
    return (reversed_bits(rest, 16) if reflected else rest) ^ final


def hexdump(data):
    for start in range(0, len(data), 16):
        row = data[start:start + 16]
        text = "".join(chr(byte) if 32 <= byte < 127 else "." for byte in row)
        yield f"{start:08X}  {row.hex(' ').upper():47}  {text}\n"


def checksums(data):
    xor = 0
    for byte in data:
        xor ^= byte
    parameters = {"ccitt_false": (0x1021, 0xFFFF, 0, 0), "xmodem": (0x1021, 0, 0, 0), "kermit": (0x1021, 0, 1, 0),
                  "x25": (0x1021, 0xFFFF, 1, 0xFFFF), "modbus": (0x8005, 0xFFFF, 1, 0), "arc": (0x8005, 0, 1, 0)}
    assert crc16(data, *parameters["ccitt_false"]) == binascii.crc_hqx(data, 0xFFFF)
    return {"sum8": sum(data) & 0xFF, "sum16": sum(data) & 0xFFFF, "lrc8": -sum(data) & 0xFF, "xor8": xor,
            "crc32": zlib.crc32(data), **{f"crc16_{name}": crc16(data, *values) for name, values in parameters.items()}}


def check_checksums_and_bytes():
    generator = random.Random(13)
    for data in b"", b"123456789", bytes(range(256)), generator.randbytes(3000):
        (folder / "data").write_bytes(data)
        script, expected = 'var string data; data = readstringfromfile("data");\n', ""
        for name, value in checksums(data).items():
            script += f'print("{name} ", executesubscriptfunc("lib\\\\checksum.dcs", "{name}", data), "\\n");\n'
            expected += f"{name} {value}\n"
        script += """print(executesubscriptfunc("lib\\\\checksum.dcs", "crc16", data, 0x8005, 0xB2AA, 1, 0x1234), "\\n");
var string hex;
print(executesubscriptfunc("lib\\\\bytes.dcs", "hexdump", data));
hex = executesubscriptfunc("lib\\\\bytes.dcs", "tohex", data, "");
print(hex, "\\n", executesubscriptfunc("lib\\\\bytes.dcs", "fromhex", hex) == data, "\\n");
print(executesubscriptfunc("lib\\\\bytes.dcs", "frombigendian", substr(data, 0, 8)), " ");
print(executesubscriptfunc("lib\\\\bytes.dcs", "fromlittleendian", substr(data, 0, 8)), "\\n");
"""
        expected += f"{crc16(data, 0x8005, 0xB2AA, 1, 0x1234)}\n" + "".join(hexdump(data)) + f"{data.hex().upper()}\n1\n"
        expected += f"{int.from_bytes(data[:8], 'big')} {int.from_bytes(data[:8], 'little')}\n"
        output, _, code = run(script)
        check(f"sums of {len(data)} bytes", (output.decode("latin-1"), code), (expected, 0))


def value_cases():
    """Calls, and what they give as text."""
    for number, count in (0x1234, 3), (0, 1), (2**64 - 1, 8), (0x123456, 2), (5, 0):
        low = number & (256**count - 1)
        yield call("bytes", "bigendian", number, count), low.to_bytes(count, "big")
        yield call("bytes", "littleendian", number, count), low.to_bytes(count, "little")
    yield call("bytes", "hexnumber", 0xABC, 2), b"ABC"
    yield call("bytes", "fromhex", b"4a:4B-4c\r\n4D"), b"JKLM"
    yield call("bytes", "tohex", b"JK", b", "), b"4A, 4B"
    body = b"GPGLL,5300.97914,N,00259.98174,E,125926,A"
    for sentence, valid in (b"$" + body + b"*28", 1), (b"$" + body + b"*28\r\n", 1), (b"$" + body + b"*29", 0), (body + b"*28", 0), \
            (b"$" + body + b"*2", 0), (b"$" + body, 0), (b"", 0), (b"$*00", 1), (b"$" + body + b"*28x", 0):
        yield call("checksum", "nmeavalid", sentence), b"%d" % valid
    yield call("checksum", "nmea", b"AB"), b"$AB*03\r\n"
    extremes = [2**63 - 1, -(2**63), 0, 7]
    for function, value in ("minimum", min(extremes)), ("maximum", max(extremes)), ("sort", ", ".join(map(str, sorted(extremes)))):
        yield call("numbers", function, " ".join(map(str, extremes)).encode()), str(value).encode()
    for numbers in [1, 2], [-1, -2], [1, 1, 2], [-5], [7, -7, 1]:
        mean = decimal.Decimal(sum(numbers)) / len(numbers)
        rounded = int(mean.quantize(decimal.Decimal(1), rounding=decimal.ROUND_HALF_UP))
        yield call("numbers", "mean", ",".join(map(str, numbers)).encode()), b"%d" % rounded
    yield call("numbers", "sum", b" \r\n;, "), b"0"
    yield call("numbers", "sort", b""), b""
    yield call("numbers", "sort", b"+07 -0 3"), b"0, 3, 7"
    yield call("numbers", "item", b"5,6;7", 2), b"7"
    lines = ['a, "b,""c""" ,,d', "", "one", '"x, y"', ',"",', '""""', '""""""']
    for line in lines:
        row = next(csv.reader([line], skipinitialspace=True)) or [""]
        yield call("numbers", "fields", line.encode(), b","), b"%d" % len(row)
        for place, text in enumerate([*row, ""]):
            yield call("numbers", "field", line.encode(), place, b","), text.strip().encode()
    for text, decimals in ("23.5", 2), ("-0.56", 1), ("-.567", 2), ("7", 3), (" +1.25 ", 2), ("-3.", 0), ("0.0", 1):
        value = int(decimal.Decimal(text.strip()).scaleb(decimals))
        yield call("numbers", "fixed", text.encode(), decimals), b"%d" % value
    for number, decimals in (-5, 2), (2350, 2), (0, 1), (12, 0), (-(2**63), 18):
        yield call("numbers", "decimal", number, decimals), f"{decimal.Decimal(number).scaleb(-decimals):.{decimals}f}".encode()


def check_values():
    cases = list(value_cases())
    output, messages, code = run("".join(f'print({wanted}, "<end>");\n' for wanted, _ in cases))
    check("code", (code, messages), (0, b""))
    for (wanted, text), printed in zip(cases, output.replace(rb"\0", b"\0").split(b"<end>")):
        check(wanted, printed, text)


FAILS = {
    ("bytes", "fromhex", b"12 3"): b"half a byte at the end of hexadecimal digits",
    ("bytes", "fromhex", b"12 3G"): b"no hexadecimal digit at position 4: G",
    ("numbers", "sum", b"1, 2.5"): b'"2.5" is no whole number of 64 bits',
    ("numbers", "sum", b"1, two"): b'"two" is no whole number of 64 bits',
    ("numbers", "sum", b"9223372036854775808"): b'"9223372036854775808" is no whole number of 64 bits',
    ("numbers", "sum", b"--1"): b'"--1" is no whole number of 64 bits',
    ("numbers", "sum", b"-"): b'"-" is no whole number of 64 bits',
    ("numbers", "mean", b" "): b"no mean of an empty list",
    ("numbers", "minimum", b""): b"no minimum of an empty list",
    ("numbers", "maximum", b""): b"no maximum of an empty list",
    ("numbers", "item", b"1 2", 2): b"a list of 2 has no number 2",
    ("numbers", "fixed", b"1,5", 1): b'"1,5" is no whole number',
    ("numbers", "fixed", b"", 1): b'"" is no whole number',
    ("numbers", "fixed", b" . ", 1): b'"" is no whole number',
    ("numbers", "fixed", b"1.5x", 1): b'"15x" is no whole number',
    ("numbers", "fixed", b"12345678901234567890.5", 0): b'"12345678901234567890" is no whole number',
}


def check_failures():
    for arguments, reason in FAILS.items():
        output, _, code = run(f'{call(*arguments)}; print("not reached");')
        check(arguments, (output.startswith(reason), b"not reached" in output, code), (True, False, 21))


def check_long_input():
    """Work that grows with the square of its input would not end in time."""
    generator = random.Random(7)
    data, numbers = generator.randbytes(150000), [generator.randint(-10**12, 10**12) for _ in range(6000)]
    (folder / "data").write_bytes(data)
    (folder / "list").write_text("\n".join(map(str, numbers)))
    output, _, code = run("""var string data; var string list;
data = readstringfromfile("data");
list = readstringfromfile("list");
writestringtofile("dump", executesubscriptfunc("lib\\\\bytes.dcs", "hexdump", data));
writestringtofile("sorted", executesubscriptfunc("lib\\\\numbers.dcs", "sort", list));
print(executesubscriptfunc("lib\\\\checksum.dcs", "crc32", data) , " ", executesubscriptfunc("lib\\\\numbers.dcs", "sum", list));""")
    check("long input", (output, code), (f"{zlib.crc32(data)} {sum(numbers)}".encode(), 0))
    check("a long dump", (folder / "dump").read_text(), "".join(hexdump(data)))
    check("a long list", (folder / "sorted").read_text(), ", ".join(map(str, sorted(numbers))))


# Devices


class Console:
    """Answers each line as `answers` says, in pieces with pauses longer than a read waits for; nothing when they are used up.
    Remembers what it was asked."""

    def __init__(self, *answers):
        self.answers, self.lines = answers, []

    def __call__(self, connection, ended):
        heard = b""
        while part := connection.recv(1000):
            heard += part
            *lines, heard = re.split(rb"[\r\n]", heard)
            for line in filter(None, lines):
                self.lines.append(line)
                if len(self.lines) <= len(self.answers):
                    for piece in self.answers[len(self.lines) - 1]:
                        ended.wait(0.06)
                        connection.sendall(piece)


def on_console(what, answers, script, expected, expected_code, expected_lines):
    console = Console(*answers)
    with peers.Server(console) as server:
        output, messages, code = run(script, "--channel", f"tcp:127.0.0.1:{server.port}")
        server.answer()
    if expected_code == 21:
        output = output[:len(expected)]
    check(what, (output, code, console.lines), (expected, expected_code, expected_lines))


def shown(*arguments):
    return f'print("[", {call("device", *arguments)}, "]");'


def check_devices():
    prompt = [b"\r\no", b"k\r", b"\n>", b" "]
    settings = b"one\n\ntwo\r\nthree"
    on_console("an answer in pieces", [[b"re", b"ad", b"y\r\n"]], shown("exchange", b"up?\r", b"ready\r\n", 5000), b"[ready\r\n]", 0, [b"up?"])
    on_console("no answer", [], shown("exchange", b"up?\r", b"ready", 50), b"[]", 0, [b"up?"])
    on_console("half an answer", [[b"read"]], shown("exchange", b"up?\r", b"ready", 200), b"[]", 0, [b"up?"])
    on_console("settings", [prompt] * 3, shown("sendlines", settings, b"\r", b"> ", 5000), b"[0]", 0, [b"one", b"two", b"three"])
    on_console("settings with CR", [prompt] * 2, shown("sendlines", b"one\rtwo\r", b"\r", b"> ", 5000), b"[0]", 0, [b"one", b"two"])
    on_console("a refused setting", [prompt, [b"?\r\n"]], shown("sendlines", settings, b"\r", b"> ", 300),
               b'line 3, "two": no "> " within 300 ms, but "?.."\n[3]', 0, [b"one", b"two"])
    on_console("no settings", [], shown("sendlines", b"\n\n", b"\r", b"> ", 300), b"[0]", 0, [])
    on_console("asked again", [[b"busy\r\n"], [b"busy", b"\r\n"], [b"read", b"y\r\n"]],
               shown("askuntil", b"state", b"ready\r\n", 5, 400), b"[ready\r\n]", 0, [b"state"] * 3)
    on_console("asked in vain", [[b"busy\r\n"]], shown("askuntil", b"state", b"ready", 2, 50), b"[]", 0, [b"state"] * 2)
    exchange = call("device", "exchange", b"on\r", b"ok", 400)
    attempt = f'func attempt() {{ attempt = ({exchange} != ""); }}\n'
    on_console("tried again", [[], [], [b"ok\r\n"]], attempt + shown("retry", "&attempt", 5, 10), b"[3]", 0, [b"on"] * 3)
    on_console("tried in vain", [], attempt + shown("retry", "&attempt", 2, 10), b"[0]", 0, [b"on"] * 2)
    begin = time.monotonic()
    run(f'func never() {{ never = 0; }} {shown("retry", "&never", 3, 300)}')
    check("the pauses of a retry", 0.6 <= time.monotonic() - begin, True)
    on_console("a mute device", [], shown("ask", b"id"), b'no answer to "id" within 2 seconds\n', 21, [b"id"])
    output, _, code = run('transmitstring("echo stale\\r");' + shown("ask", b"id"))
    check("what nobody has read", (output, code), (b"[simulated device, serial number 1]", 0))


library, ondscript = sys.argv[1:]
with tempfile.TemporaryDirectory() as scratch:
    folder = pathlib.Path(scratch)
    shutil.copytree(library, folder / "lib")
    check_checksums_and_bytes()
    check_values()
    check_failures()
    check_long_input()
    check_devices()
print("\n".join(problems) or "the library does what it says")
sys.exit(bool(problems))
