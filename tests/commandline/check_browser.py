#!/usr/bin/env python3
"""What a person sees of a report page in a real browser, chromium without its window: in the light, in the dark, on a narrow screen
and on paper.
"""

import pathlib
import re
import shutil
import subprocess

from calls import TIMEOUT, Call, check, run_checks

root = pathlib.Path(__file__).resolve().parents[2]

SCRIPT = r"""print("measuring\n"); transmitstring("adc 1\n"); delay(50); receivestring();
executesubscriptfunc("lib\\limit.dcs", "limit", "supply", 3312, 3200, 3400, "V/1000");
executesubscriptfunc("lib\\limit.dcs", "atmost", "ripple", 32, 20, "mV");
transmitfilefromstring("x", 1, 1, 9, 1);
print("<script>document.body.innerHTML = 'taken over'</script><img src=x onerror='document.body.innerHTML = 1'>\n");
"""


def browse(*options):
    done = subprocess.run(["chromium-headless-shell", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--user-data-dir=profile",
                           *options, pathlib.Path("report.html").resolve().as_uri()], capture_output=True, text=True, timeout=TIMEOUT)
    check(" ".join(options), done.returncode == 0, done.stderr)
    return done.stdout


def colours(picture, *options):
    """How many points have which colour."""
    browse(f"--screenshot={picture}", *options)
    text = subprocess.run(["convert", picture, "-depth", "8", "-format", "%c", "histogram:info:"], capture_output=True, text=True,
                          timeout=TIMEOUT).stdout
    return {colour: int(count) for count, colour in re.findall(r"(\d+): .*?(#[0-9A-F]{6})", text)}


def make_report():
    shutil.copytree(root / "lib", "lib")
    pathlib.Path("part.dcs").write_text(SCRIPT)
    code, _, messages = Call(["run", "part.dcs", "--report", "html=report.html"]).end()
    check("the run", code == 10, (code, messages))


def check_looks():
    style = pathlib.Path("report.html").read_text()
    light, dark = [dict(re.findall(r"--([\w-]+): (#[0-9a-f]+)", part)) for part in re.findall(r":root \{(.*?)\}", style, re.DOTALL)[:2]]

    def full(colour):
        return "#" + (colour[1:] if len(colour) == 7 else "".join(2 * c for c in colour[1:])).upper()

    for theme, scheme in ((light, "1"), (dark, "0")):
        seen = colours(f"{scheme}.png", f"--blink-settings=preferredColorScheme={scheme}", "--window-size=1000,1400")
        ground = full(theme["paper"])
        check("the ground", max(seen, key=seen.get) == ground, (ground, sorted(seen.items(), key=lambda each: -each[1])[:3]))
        for name in ("ink", "bad", "bad-soft", "good", "good-soft", "out", "in", "line", "raised"):
            check(f"{name} is seen", seen.get(full(theme[name]), 0) > 5, (name, theme[name], seen.get(full(theme[name]))))
        other = dark if theme is light else light
        check("nothing of the other theme", not any(seen.get(full(other[name])) for name in ("bad-soft", "good-soft")))


def check_nothing_runs():
    page = browse("--dump-dom")
    check("the script is text", "&lt;script&gt;document.body" in page and "<h1>" in page and "taken over'</script>" not in page, page)


def check_narrow():
    """On a telephone the page itself does not scroll sideways: its last column of points is empty ground."""
    colours("narrow.png", "--window-size=500,2400", "--blink-settings=preferredColorScheme=1")
    edge = subprocess.run(["convert", "narrow.png", "-crop", "8x2400+492+0", "-depth", "8", "-unique-colors", "txt:"], capture_output=True,
                          text=True, timeout=TIMEOUT).stdout
    check("nothing reaches the edge", set(re.findall(r"#[0-9A-F]{6}", edge)) == {"#FFFFFF"}, edge)


def check_paper():
    browse("--print-to-pdf=report.pdf", "--no-pdf-header-footer", "--blink-settings=preferredColorScheme=0")
    pages = pathlib.Path("report.pdf").read_bytes()
    check("a page of paper", pages.startswith(b"%PDF") and pages.count(b"/Type /Page\n") in (1, 2), pages.count(b"/Type /Page\n"))


run_checks(make_report, check_looks, check_nothing_runs, check_narrow, check_paper)
