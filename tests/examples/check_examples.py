#!/usr/bin/env python3
"""The examples on a device behind TCP:  check_examples.py [--windows] PROJECT_FOLDER COMMAND...

Each script of examples/, and the first one of docs/language.md, must do on a device that answers late and in pieces what it does
on the simulated one (EXPECTED/NAME.out), and on a device that does not answer fail with a message that says so, leaving no
file behind. COMMAND runs a script. With --windows, scripts that ask questions are left out.
"""

import concurrent.futures
import pathlib
import re
import shlex
import shutil
import sys
import tempfile
import zlib

tests = pathlib.Path(__file__).resolve().parent.parent
sys.path += [str(tests), str(tests / "channels")]
import expect  # noqa: E402
import peers  # noqa: E402
import run_scripts  # noqa: E402

WITHOUT_DEVICE = {"crc32"}
# A raw byte stream stores no files, so the transfers fail; the rest must be in the output.
STORES_FILES = {"flash": b"boot.bin: verified, CRC 8641279F\ntable.bin: verified, CRC F85CF83B\n1 failures\n"}


class Instrument:
    """What the simulated device does, as far as the examples ask for it."""

    def __init__(self, firmware):
        self.inputs = [400 + 450 * i for i in range(8)]
        self.outputs = list(self.inputs)
        self.files = {"1": firmware / "boot.bin", "2": firmware / "table.bin"}

    def answer(self, line):
        command, _, rest = line.partition(" ")
        words = rest.split()
        if command == "id":
            return "simulated device, serial number 1"
        if command == "ver":
            return "firmware 1.0, no logic"
        if command == "temp":
            return "23.50"
        if command == "echo":
            return rest
        if command == "crc":
            return f"{zlib.crc32(self.files[words[0]].read_bytes()):08X}"
        channel = int(words[0])
        if command == "dac":
            self.outputs[channel] = int(words[1])
            return "ok"
        left = self.outputs[channel] - self.inputs[channel]
        self.inputs[channel] += (abs(left) + 1) // 2 * (1 if left > 0 else -1)
        return str(self.inputs[channel])


def late(firmware):
    """Serves an instrument whose answers take 50 to 200 ms and come in three pieces, the last of them the line feed."""

    def serve(connection, ended):
        instrument, heard, asked = Instrument(firmware), b"", 0
        while part := connection.recv(1000):
            heard += part
            *lines, heard = re.split(rb"[\r\n]", heard)
            for line in filter(None, lines):
                answer = instrument.answer(line.decode()).encode() + b"\r\n"
                middle = len(answer) // 2
                for piece in answer[:middle], answer[middle:-1], answer[-1:]:
                    ended.wait((0.017, 0.04, 0.065)[asked % 3])
                    connection.sendall(piece)
                asked += 1

    return serve


def mute(connection, _):
    while connection.recv(1000):
        pass


class Example:
    """A script in a copy of the examples' folder of its own."""

    def __init__(self, text, name, expected, examples, scratch):
        self.text, self.name, self.expected, self.folder = text, name, expected, scratch / name / "examples"
        shutil.copytree(examples, self.folder)
        shutil.copytree(examples.parent / "lib", self.folder.parent / "lib")
        (self.folder / f"{name}.dcs").write_bytes(text)
        self.files = self.listing()

    def listing(self):
        return sorted(path.relative_to(self.folder) for path in self.folder.rglob("*"))

    def run(self, serve):
        options = shlex.split(run_scripts.remark(self.text, b"options", ""))
        answers = "".join(line + "\n" for line in run_scripts.remark(self.text, b"answers", "").split("|"))
        with peers.Server(serve) as server:
            channel = ["--channel", f"tcp:127.0.0.1:{server.port}"]
            return expect.run(command + [f"{self.name}.dcs", *options, *channel], self.folder, answers.encode())

    def problems(self):
        # The silent device first, for the files that must not be there.
        output, messages, code = self.run(mute)
        told = b'no answer to "' in output or b"the device does not come up\n" in output
        if self.name not in WITHOUT_DEVICE and not (told and code == 21 and self.listing() == self.files):
            yield f"{self.name} on a silent device: {code}, {output}, {messages}, {self.listing()}"
        output, messages, code = self.run(late(self.folder / "firmware"))
        expected, expected_code = self.expected, 0
        if self.name in STORES_FILES:
            expected, expected_code = STORES_FILES[self.name], 21
            output = output[output.find(expected):][:len(expected)]
        report = expect.differences(expected, output, messages, expected_code, code)
        if report:
            yield f"{self.name} on a late device:\n{report}"


def main():
    examples = root / "examples"
    with tempfile.TemporaryDirectory() as scratch, concurrent.futures.ThreadPoolExecutor(4) as pool:
        all_examples = []
        for path in sorted(examples.glob("*.dcs")):
            if windows and run_scripts.remark(path.read_bytes(), b"answers", ""):
                continue
            expected = (root / "tests/examples" / f"{path.stem}.out").read_bytes()
            all_examples.append(Example(path.read_bytes(), path.stem, expected, examples, pathlib.Path(scratch)))
        page = re.search(r"^```dcs\n(.*?)^```\n\n```text\n(.*?)^```$", (root / "docs/language.md").read_text(),
                         re.MULTILINE | re.DOTALL)
        text = page[1].replace('"lib\\\\', '"..\\\\lib\\\\').encode()
        all_examples.append(Example(text, "language-page", page[2].encode(), examples, pathlib.Path(scratch)))
        problems = [problem for found in pool.map(lambda example: list(example.problems()), all_examples) for problem in found]
    for problem in problems:
        print("FAILED", problem, end="\n\n")
    print(f"{len(all_examples)} examples, {len(problems)} problems")
    sys.exit(1 if problems or not all_examples else 0)


windows = sys.argv[1] == "--windows"
root, *command = sys.argv[2:] if windows else sys.argv[1:]
root = pathlib.Path(root)
if __name__ == "__main__":
    main()
