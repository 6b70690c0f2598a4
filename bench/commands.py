"""Commands and what they cost; shared by what measures whole commands."""

import os
import pathlib
import statistics
import sys
import time

TURNS = 5


class Cost:
    """Of one command, in milliseconds."""

    def __init__(self, wall, user):
        self.wall, self.user = wall, user


def run(command, output):
    """Runs a command with its standard output in a file, and stops everything when it fails. Returns what it cost."""
    begin = time.perf_counter()
    to_file = (os.POSIX_SPAWN_OPEN, 1, str(output), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o666)
    try:
        process = os.posix_spawnp(command[0], command, os.environ, file_actions=[to_file])
    except FileNotFoundError:
        sys.exit(f"{command[0]} is not installed")
    _, status, usage = os.wait4(process, 0)
    wall = time.perf_counter() - begin
    if status != 0:
        sys.exit(f"{' '.join(command)} failed:\n{pathlib.Path(output).read_text(errors='replace')[-1000:]}")
    return Cost(wall * 1000, usage.ru_utime * 1000)


def median_user(command, output):
    return statistics.median(run(command, output).user for _ in range(TURNS))


def print_table(*columns):
    """The head of a table; the first column is text, the others are numbers."""
    print(f"\n| {' | '.join(columns)} |\n|---|{'--:|' * (len(columns) - 1)}")


def print_row(*cells):
    print(f"| {' | '.join(cells)} |", flush=True)
