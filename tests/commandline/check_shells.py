#!/usr/bin/env python3
"""The completions of ondscript in their shells, and its manual page:  check_shells.py ondscript BUILD_FOLDER PROGRAM

All of them as `cmake --install` puts them into a folder.
"""

import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

TIMEOUT = 60
failures = 0
folder = pathlib.Path(tempfile.mkdtemp())
here = folder / "here"


def check(what, condition, details=""):
    global failures
    if not condition:
        failures += 1
        print(f"FAILED: {what}\n{details}")


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=TIMEOUT, **options)


# What is typed, and a few of the words that are offered and are not.
CASES = (
    ("ondscript ", {"run", "check", "trace", "prompt", "sweep.dcs"}, {"show", "--set"}),
    ("ondscript che", {"check"}, {"run"}),
    ("ondscript run --re", {"--report", "--result"}, {"--set"}),
    ("ondscript --ti", {"--timeout"}, {"--times"}),
    ("ondscript check --", {"--set", "--help"}, {"--channel", "--report"}),
    ("ondscript trace ", {"show", "export"}, {"run"}),
    ("ondscript trace show --", {"--only", "--times", "--gap"}, {"--channel"}),
    ("ondscript trace show --times ", {"absolute", "start", "last"}, {"sweep.dcs"}),
    ("ondscript run swe", {"sweep.dcs"}, {"run"}),
    ("ondscript run --device-dir ", {"device"}, {"sweep.dcs"}),
    ("ondscript completion ", {"bash", "zsh", "fish"}, {"sweep.dcs"}),
)


def words_of_bash(line):
    words = line.split(" ")
    script = f"""source {folder}/share/bash-completion/completions/ondscript
COMP_WORDS=({' '.join(word or "''" for word in words)}) COMP_CWORD={len(words) - 1}
_ondscript
printf '%s\\n' "${{COMPREPLY[@]}}" """
    return run(["bash", "--norc", "-c", script], cwd=here)


def words_of_fish(line):
    script = f"source {folder}/share/fish/vendor_completions.d/ondscript.fish; complete -C '{line}'"
    return run(["fish", "--no-config", "-c", script], cwd=here, env={**os.environ, "HOME": str(folder)})


class Zsh:
    """Zsh completes in its line editor only, so on a terminal, where Ctrl+D lists what fits."""

    def __init__(self):
        self.master, slave = pty.openpty()
        self.process = subprocess.Popen(["zsh", "-f", "-i"], stdin=slave, stdout=slave, stderr=slave, cwd=here,
                                        start_new_session=True,
                                        env={**os.environ, "TERM": "dumb", "COLUMNS": "200", "HOME": str(folder)})
        os.close(slave)
        self.type(f"fpath=({folder}/share/zsh/site-functions $fpath); autoload -U compinit; compinit -D -u; LISTMAX=1000;"
                  "zle_bracketed_paste=(); zstyle ':completion:*' verbose no; echo rea''dy\n", {"ready\r\n"})

    def type(self, keys, until):
        """What shows until all of these have (checked)."""
        shown = ""
        os.write(self.master, keys.encode())
        deadline = time.monotonic() + TIMEOUT
        while not all(text in shown for text in until) and time.monotonic() < deadline:
            if select.select([self.master], [], [], 1)[0]:
                shown += os.read(self.master, 4096).decode("utf-8", "replace")
        check(f"zsh shows {until}", all(text in shown for text in until), shown)
        return shown

    def words(self, line, expected):
        self.type(line, {line})
        shown = self.type("\x04", expected)
        shown += self.type("\x15echo en''d\n", {"end\r\n"})
        return set(re.findall(r"\S+", shown)) - set(line.split())

    def end(self):
        os.write(self.master, b"exit\n")
        self.process.wait(TIMEOUT)
        os.close(self.master)


def check_words(shell, line, words, expected, others):
    words = {word.rstrip("/") for word in words}
    check(f"{shell}: {line}", expected <= words and not others & words, f"  {words}\n  expected {expected}, not {others}")


def check_completions():
    here.mkdir()
    (here / "sweep.dcs").touch()
    (here / "device").mkdir()
    zsh = Zsh()
    for line, expected, others in CASES:
        for shell, words_of in (("bash", words_of_bash), ("fish", words_of_fish)):
            result = words_of(line)
            check(f"{shell} takes the file", result.returncode == 0 and not result.stderr, result)
            check_words(shell, line, re.findall(r"^[^\t\n]+", result.stdout, re.MULTILINE), expected, others)
        check_words("zsh", line, zsh.words(line, expected), expected, others)
    zsh.end()


def check_manual(program):
    page = folder / "share/man/man1/ondscript.1"
    lint = run(["mandoc", "-T", "lint", "-W", "warning", str(page)])
    wrong = [line for line in lint.stdout.splitlines() if "missing date" not in line]
    check("the manual page is well formed", not wrong, "\n".join(wrong))
    text = run(["mandoc", "-T", "ascii", "-O", "width=200", str(page)]).stdout
    text = re.sub(r".\x08", "", text)
    for command in ("run", "check", "prompt", "trace show", "trace export"):
        options = re.findall(r"^  (-[-\w]+)", run([program, *command.split(), "--help"]).stdout, re.MULTILINE)
        section = text[text.index(f"\n   ondscript {command}\n"):]
        section = section[:section.find("\n   ondscript ", 5)]
        for option in set(options) - {"-h"}:
            check(f"the manual page has {command} {option}", re.search(rf"^ +{option}\b", section, re.MULTILINE), section)
        check(f"{command} has options", options)


def main():
    build, program = sys.argv[2:]
    installed = run(["cmake", "--install", build, "--prefix", str(folder)])
    check("installing", not installed.returncode and (folder / "bin/ondscript").exists(), installed)
    check_completions()
    check_manual(program)
    sys.exit(1 if failures else 0)


main()
