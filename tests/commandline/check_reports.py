#!/usr/bin/env python3
"""Reports of a run, read by those who they are for: build servers, test harnesses, programs, and a browser's rules."""

import html.parser
import json
import pathlib
import re
import resource
import shutil
import subprocess
import time

from calls import TIMEOUT, Call, check, expect, name, run_checks

root = pathlib.Path(__file__).resolve().parents[2]
EVIL = "<script>alert(1)</script> & \"it's\" ]]> --> {{x}} # SKIP \\ \x01\x1b\x7f\t"
SEEN = "<script>alert(1)</script> & \"it's\" ]]> --> {{x}} # SKIP \\ \u2401\u241b\u2421\t"
# Script strings of the same, in UTF-8 and in Windows-1252.
SCRIPT = EVIL.replace("\\", "\\\\").replace('"', '\\"').replace("\x01", "\\(1)").replace("\x1b", "\\(27)").replace("\x7f", "\\(127)")
REPORTS = {format: f"report.{format}" for format in ("junit", "tap", "jsonl", "html")}
OPTIONS = [word for format, path in REPORTS.items() for word in ("--report", f"{format}={path}")]


def report(format):
    return pathlib.Path(REPORTS[format]).read_text(encoding="utf-8")


def make_scripts():
    shutil.copytree(root / "lib", "lib")
    pathlib.Path("good.dcs").write_text("""print("first\\nsecond\\n"); transmitstring("id\\n"); delay(1);
executesubscriptfunc("lib\\\\limit.dcs", "limit", "supply", 3312, 3200, 3400, "V/1000");
print(executesubscriptfunc("lib\\\\device.dcs", "ask", "temp"), "\\n");
executesubscriptfunc("lib\\\\limit.dcs", "atmost", "ripple", 12, 20, "mV"); s = "a < b";""")
    pathlib.Path("evil & bad.dcs").write_bytes(
        f'print("{SCRIPT}\\n", "caf\\(xE9) \\(x80)\\n"); messagebox("A <b>", "<i>go</i>");'.encode()
        + f'print("limit: {SCRIPT} = -1.5 <u>, 0 to 1 <u>: FAIL\\n"); transmitstring("{SCRIPT}\\n");'.encode()
        + 'print("caf\u00e9\\n"); transmitfilefromstring("x", 1, 1, 9, 1);'.encode())
    pathlib.Path("fails.dcs").write_text('print("so far\\n"); x();')
    pathlib.Path("answers.txt").write_text("A <b> = OK\n")


def run(*scripts, options=()):
    return Call(["run", *scripts, *OPTIONS, *options]).end()


def check_all():
    """A call with every verdict."""
    code, _, messages = run("good.dcs", "evil & bad.dcs", "fails.dcs", "none.dcs",
                            options=["--answers", "answers.txt", "--set", "s:string=", "--get", "s"])
    check("the call", code == 21 and b"none.dcs: the file cannot be opened" in messages, (code, messages))


def check_junit():
    """Debian's junitparser, which is there for the system's Python."""
    got = subprocess.run(["/usr/bin/python3", "-c", """
import json, junitparser, sys
xml = junitparser.JUnitXml.fromfile(sys.argv[1])
print(json.dumps([[xml.tests, xml.failures, xml.errors, xml.skipped]] + [
    [suite.name, suite.tests, suite.failures, suite.errors, [(p.name, p.value) for p in suite.properties()],
     [(case.name, case.classname, [(type(r).__name__, r.message, r.type) for r in case.result], case.system_out) for case in suite]]
    for suite in xml]))""", REPORTS["junit"]], capture_output=True, text=True, timeout=TIMEOUT)
    check("junitparser reads it", got.returncode == 0, got.stderr)
    counts, good, evil, fails, none = json.loads(got.stdout)
    check("counts", counts == [7, 2, 2, 0], counts)
    check("a script that passed", good[:5] == ["good.dcs", 3, 0, 0, [["s", "a < b"]]], good)
    check("its cases", [case[0] for case in good[5]] == ["good.dcs", "supply", "ripple"] and not any(case[2] for case in good[5]), good)
    check("its output", good[5][0][3].startswith("first\nsecond\nlimit: supply = 3.312 V, 3.200 to 3.400 V: PASS\n23.50\n"), good[5][0])
    check("a measurement", good[5][1][3] == "3.312 V, limits 3.200 to 3.400 V", good[5][1])
    (_, _, why, output), (measured, _, failure, _) = evil[5]
    check("a script that failed", why[0][0] == "Failure" and why[0][2] == "code 10" and SEEN.rstrip("\t") in why[0][1], why)
    check("its output is what was printed", output.startswith(f"{SEEN}\ncaf\u00e9 \u20ac\n") and "\ncaf\u00e9\n" in output, output)
    check("a failed measurement", measured.strip() == SEEN.strip() and failure == [["Failure", "-1.5 <u>, limits 0 to 1 <u>", "limit"]], evil)
    check("a script that could not be run", fails[5][0][2] == [["Error", "the script failed", "code 21"]], fails)
    check("a script that is missing", none[5][0][2] == [["Error", "the file cannot be opened", "code 8"]], none)


def check_tap():
    """Perl's harness."""
    got = subprocess.run(["prove", "-v", "-e", "cat", REPORTS["tap"]], capture_output=True, text=True, timeout=TIMEOUT).stdout
    check("prove reads it", "Failed 3/4 subtests" in got and "Parse errors" not in got and "Failed tests:  2-4" in got, got)
    check("a subtest", "    ok 1 - supply = 3.312 V, 3.200 to 3.400 V\n" in report("tap"), report("tap"))
    check("no text is a directive", "todo" not in got.lower() and "skipped" not in got, got)


def check_json_lines():
    records = [json.loads(line) for line in report("jsonl").split("\n")[:-1]]
    kinds = [record["record"] for record in records]
    check("the order of records", kinds[:2] == ["run", "script"] and kinds[-2:] == ["end of script", "end"], kinds)
    supply = next(record for record in records if record["record"] == "measurement")
    check("a measurement", {**supply, "at_us": 0} == {"record": "measurement", "at_us": 0, "name": "supply", "value": "3.312",
                                                      "low": "3.200", "high": "3.400", "unit": "V", "passed": True}, supply)
    traffic = [(record["operation"], record["answer"], record["bytes"], record["data"]) for record in records if record["record"] == "traffic"]
    check("traffic", ("Transmit", 0, 3, "id\n") in traffic and ("Transmit", 0, len(EVIL) + 1, (EVIL + "\n")[:64]) in traffic
          and any(entry[:2] == ("Receive", 0) for entry in traffic) and ("TransmitFileFromMemory", 9, 0, "") in traffic, traffic)
    began, late = 0, []
    for i, record in enumerate(records):  # of each script, times count from its beginning
        began = i if record["record"] == "script" else began
        if record["record"] == "end of script":
            late += [each for each in records[began:i] if not 0 <= each.get("at_us", 0) <= record["took_us"]]
    check("times", not late, late)
    ends = [(record["script"], record["verdict"], record["code"], record["values"]) for record in records if record["record"] == "end of script"]
    check("verdicts", ends == [("good.dcs", "passed", 0, {"s": "a < b"}), ("evil & bad.dcs", "failed", 10, {"s": ""}),
                               ("fails.dcs", "not tested", 21, {"s": ""}), ("none.dcs", "not tested", 8, {"s": ""})], ends)


def check_questions():
    """What might have been answered stands beside the answer. Limits are seen by those who ask on a terminal alone."""
    items = "".join(f"item {i:02}\\0" for i in range(99))
    pathlib.Path("ask.dcs").write_text(f"""print(userinputint32("Trim", "Offset", 0, -5, 500), userlistinput("Range", "Which", "0 to 4 V\\04 to 20 mA\\0", 0), "\\n");
userlistinput("Many", "", "{items}", 0); userinputstring("Who", "", "");""")
    pathlib.Path("replies.txt").write_text("Trim = 12\nRange = 1\nMany = 0\nWho = <cancel>\n")
    code, _, messages = run("ask.dcs", options=["--answers", "replies.txt"])
    asked = [record for record in map(json.loads, report("jsonl").splitlines()) if record["record"] == "question"]
    limits = {"limits": "-5 to 500"} if name == "ondscript" else {}
    check("limits", code == 0 and asked[0] == {**asked[0], "caption": "Trim", "answer": "12", **limits} and "items" not in asked[0] and
          ("limits" in asked[0]) == bool(limits), (code, messages, asked[:1]))
    check("items", asked[1]["items"] == ["0 to 4 V", "4 to 20 mA"] and asked[1]["answer"] == "4 to 20 mA" and "limits" not in asked[1] and
          len(asked[2]["items"]) == 99, asked[1])
    check("no answer", asked[3] == {**asked[3], "answer": None, "by": "replies.txt:4"} and not {"items", "limits"} & asked[3].keys(), asked[3])
    page = Page(report("html")).text
    for text in ["Which (one of 0 to 4 V, 4 to 20 mA)", "(one of item 00, item 01, ", "item 21, and more)"] + [f"Offset ({each})" for each in limits.values()]:
        check(f"the page shows {text}", text in page, page[page.find("The user's answers"):][:900])


def check_growing():
    """JSON Lines stand in the file as soon as something happens, in their order, whatever ends the process; one run at a time writes."""
    path = pathlib.Path("growing.jsonl")
    path.write_text("another file")
    expect(["run", "-", "--report", f"jsonl={path}"], 5, message=b"growing.jsonl is not a report in JSON Lines, and is not replaced by one",
           text=b"print(1);")
    check("the other file", path.read_text() == "another file")
    shutil.copy(REPORTS["jsonl"], path)
    older = len(path.read_text())

    def records():
        text = path.read_text(encoding="utf-8")
        return [json.loads(line) for line in text.split("\n")[:-1]] if len(text) != older else []

    pathlib.Path("a.bin").write_bytes(b"123456789")
    script = b'print("one\\n"); transmitstring("id\\n"); transmitfile("a.bin", 1, 2, 0, 1); print("limit: x = 1, 0 to 2: PASS\\ntwo"); while (1 == 1) { delay(10); }'
    call = Call(["run", "-", "--report", f"jsonl={path}"], script)
    try:
        deadline = time.monotonic() + TIMEOUT
        while not any(record["record"] == "measurement" for record in records()) and time.monotonic() < deadline:
            time.sleep(0.02)
        expect(["run", "-", "--report", f"jsonl={path}"], 5, message=b"cannot write the report growing.jsonl: it is in use", text=b"print(1);")
    finally:
        call.process.kill()
        call.end()
    if name == "ondscript":  # under Wine, what was killed is the starter
        got = [(record["record"], record.get("bytes") or record.get("text") or record.get("name")) for record in records() if not re.match("(a.bin .*)?$", record.get("text", "-"))]
        check("what a killed run leaves", got == [("run", None), ("script", None), ("output", "one"), ("traffic", 3), ("traffic", 9),
                                                  ("output", "limit: x = 1, 0 to 2: PASS"), ("measurement", "x")], got)


class Page(html.parser.HTMLParser):
    """The text of a page, whether its elements are closed, and whatever could fetch or run something."""

    def __init__(self, text):
        super().__init__()
        self.open, self.text, self.foreign, self.tags = [], "", [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.tags.append(tag)
        if tag in ("script", "link", "img", "iframe", "object", "embed", "base", "form", "image", "use"):
            self.foreign.append(tag)
        for attribute, value in attributes:
            if attribute.startswith("on") or (attribute in ("href", "src", "xlink:href") and not value.startswith("#")):
                self.foreign.append((tag, attribute, value))
        if tag not in ("meta", "rect", "path"):
            self.open.append(tag)

    def handle_endtag(self, tag):
        if tag not in ("rect", "path") and (not self.open or self.open.pop() != tag):
            self.foreign.append(f"</{tag}>")

    def handle_data(self, data):
        if self.open[-1:] != ["style"]:
            self.text += data
        elif "url(" in data or "@import" in data:
            self.foreign.append(data)


def check_page():
    page = Page(report("html"))
    check("the page stands alone", not page.foreign and not page.open, (page.foreign, page.open))
    check("the page may load and run nothing", "default-src 'none'" in report("html"))
    places = [page.text.find(text) for text in ("Not tested", "good.dcs", "evil & bad.dcs", "supply", "first\n", "Unknown identifier near")]
    check("verdicts first", -1 not in places and places == sorted(places), places)
    check("what a script printed is text", SEEN in page.text and "caf\u00e9 \u20ac" in page.text, page.text)
    for text in ("3.200 to 3.400 V", "PASS", "FAIL", "A <b>", "<i>go</i>", "answers.txt:1", "the file cannot be opened", "23.50", "to device", "answer 9"):
        check(f"the page shows {text}", text in page.text)
    check("charts", page.tags.count("svg") == 3 + 2, page.tags.count("svg"))


def check_size():
    """10,000 lines, and more than are kept."""
    pathlib.Path("long.dcs").write_text('var dword i; while (i < n) { print("line ", i, " of a long run says 0123456789\\n"); i += 1; }')
    code = run("long.dcs", options=["--set", "n:dword=10000"])[0]
    page = report("html")
    check("10,000 lines", code == 0 and page.count("of a long run") == 10000, code)
    print(f"a page with 10,000 lines of 40 bytes has {len(page)} bytes")
    check("a page of 10,000 lines", len(page) < 1_000_000, len(page))
    if name == "ondscript":
        run("long.dcs", options=["--set", "n:dword=100150"])
        page = report("html")
        check("more lines than are kept", "<span class=\"quiet\">[150 left out]</span>\n" in page and "line 49999 of" in page
              and "line 50000 of" not in page and "line 50149 of" not in page and "line 50150 of" in page, len(page))
        check("they are counted", "Output, 100150 lines" in page)


def check_early_end():
    """Reports also tell what never ran, and why."""
    code, _, _ = run("good.dcs", "fails.dcs", options=["--channel", "tcp:127.0.0.1:1", "--set", "s:string="])
    ends = [json.loads(line) for line in report("jsonl").splitlines() if "end of script" in line]
    check("no device", code == 4 and [(end["verdict"], end["code"]) for end in ends] == [("not tested", 4), ("not run", None)]
          and "tcp:127.0.0.1:1: " in ends[0]["reason"], ends)
    check("in TAP", "ok 2 - fails.dcs # SKIP not run" in report("tap"), report("tap"))
    check("for build servers", '<skipped message="not run"/>' in report("junit"), report("junit"))
    expect(["run", "good.dcs", "--set", "s:string=", "--report", "html=/dev/null"], 2, message=b"--report html=/dev/null: the file cannot be written")


def check_full_disk():
    """A report that does not fit costs nothing but itself."""
    def fill_disk():
        resource.setrlimit(resource.RLIMIT_FSIZE, (300, 300))

    pathlib.Path(REPORTS["html"]).write_text("an older one")
    pathlib.Path("small.dcs").write_text('print("small");')
    for verdict, wanted in ((["--fail-on", "small"], 10), ([], 0)):
        code, _, messages = Call(["run", "small.dcs", *OPTIONS, *verdict], prepare=fill_disk).end()
        told = messages.count(b"report.html: the report cannot be written")
        check("the run's result stays", code == wanted and told == 1 and b"report.tap" not in messages, (code, messages))
        check("so does the growing report", messages.count(b"the report report.jsonl cannot be written any more: File too large") == 1, messages)
        check("which has whole lines", len(report("jsonl").split("\n")) > 2 and report("jsonl").startswith('{"record":"run"'))
    check("so does the older report", report("html") == "an older one" and not list(pathlib.Path(".").glob("*.new*")))
    code, _, messages = Call(["run", "big.dcs", "--set", "s:string=" + "x" * 3000, "--get-file", "values.json"], prepare=fill_disk).end()
    check("values are results", code == 5 and b"values.json: the values cannot be written" in messages, (code, messages))


checks = [check_all, check_junit, check_tap, check_json_lines, check_page, check_questions, check_growing, check_size, check_early_end]
run_checks(make_scripts, *checks, *([check_full_disk] if name == "ondscript" else []))
