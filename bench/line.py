#!/usr/bin/env python3
"""What a trace, and a report, add to runs that talk to a device over a real line:  bench/line.py ONDSCRIPT

A hundred questions and answers of some twenty bytes, over TCP to a peer that answers after 1 ms, and over a pseudo terminal whose
peer takes and gives bytes as a line of 115200 baud does. Whole commands in turns, the least of five.
"""

import os
import pathlib
import pty
import socket
import sys
import tempfile
import threading
import time
import tty

import commands

QUESTIONS = 100
BYTE_TIME = 10 / 115200  # seconds
SCRIPT = """var dword i; var string heard;
while (i < %d) {
  transmitstring("adc 1\\r");
  heard = "";
  while (instr(heard, "\\n") < 0) { delay(1); heard += receivestring(); }
  i += 1;
}
print(heard);
"""
REPLY = b"reading of input 1: 850\r\n"


def serve(read, write, pause):
    """Answers each question until there is nobody any more."""
    while asked := read():
        for _ in range(asked.count(b"\r")):
            time.sleep(pause)
            write(REPLY)


def over_tcp():
    listener = socket.create_server(("127.0.0.1", 0))

    def accept():
        while True:
            connection, _ = listener.accept()
            connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            serve(lambda: connection.recv(100), connection.sendall, 0.001)

    return f"tcp:127.0.0.1:{listener.getsockname()[1]}", accept


def over_serial():
    master, slave = pty.openpty()
    tty.setraw(slave)
    return f"serial:{os.ttyname(slave)}:115200", lambda: serve(
        lambda: os.read(master, 100), lambda reply: os.write(master, reply), BYTE_TIME * (len("adc 1\r") + len(REPLY)))


def main():
    folder = pathlib.Path(tempfile.mkdtemp())
    script = folder / "ask.dcs"
    script.write_text(SCRIPT % QUESTIONS)
    kinds = {"alone": [], "traced": ["--trace", str(folder / "t.jsonl")], "reported": ["--report", f"html={folder / 'r.html'}"]}
    commands.print_table("line", *(f"{kind}: ms" for kind in kinds), "of which computed: alone, ms", "traced", "trace", "records")
    for line in (over_tcp, over_serial):
        channel, peer = line()
        threading.Thread(target=peer, daemon=True).start()
        costs = {kind: [] for kind in kinds}
        for _ in range(commands.TURNS):
            for kind, options in kinds.items():
                costs[kind].append(commands.run([sys.argv[1], "run", str(script), "--channel", channel, *options], folder / "output"))
        wall, user = ({kind: min(getattr(cost, part) for cost in each) for kind, each in costs.items()}
                      for part in ("wall", "user"))
        records = (folder / "t.jsonl").read_bytes().count(b"\n")
        commands.print_row(line.__name__, *(f"{wall[kind]:.0f}" for kind in kinds), f"{user['alone']:.0f}", f"{user['traced']:.0f}",
                           f"{100 * (wall['traced'] / wall['alone'] - 1):+.1f} %", str(records))


main()
