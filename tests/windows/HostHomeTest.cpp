// The sample host as a bench's home, from outside: what it remembers, the scripts that it runs, its log, its counters
// and its view of the traffic.
#include "host/windows/resource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/HostProgram.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <commctrl.h>
#include <cstdlib>

namespace {

// Windows of one run that another run shall remember.
constexpr RECT kMain = {120, 90, 620, 0};
constexpr RECT kTerminal = {140, 300, 700, 700};
constexpr RECT kTrace = {200, 110, 900, 420};

// A bench's folder: settings, log, scripts.
struct Bench {
  TemporaryFolder folder;

  std::string Arguments(const std::string& more = "") const {
    return "--settings " + folder.PathOf("settings.ini") + " --log " + folder.PathOf("log.txt") + " " + more;
  }
  std::string Script(const std::string& name, const std::string& text) const {
    folder.Write(name, text);
    return folder.PathOf(name);
  }
};

void MoveTo(const Window& window, const RECT& place) {
  const RECT now = window.Place();
  const int height = place.bottom == 0 ? now.bottom - now.top : place.bottom - place.top;
  SetWindowPos(window.Handle(), nullptr, place.left, place.top, place.right - place.left, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void CheckPlace(const Window& window, const RECT& place) {
  const RECT now = window.Place();
  CAPTURE(window.Text());
  CHECK(now.left == place.left);
  CHECK(now.top == place.top);
  CHECK(now.right == place.right);
  CHECK((place.bottom == 0 || now.bottom == place.bottom));
}

Window OpenTool(const HostProgram& host, int tool, const std::string& caption) {
  host.Main().PressControl(IDM_FIRST_TOOL + tool);
  return host.WaitForTop(caption);
}

Window OpenRows(const HostProgram& host, int command, const std::string& caption) {
  host.Main().Send(WM_COMMAND, static_cast<WPARAM>(command));
  return host.WaitForTop(caption);
}

LRESULT RowCount(const Window& rows) {
  return rows.Control(IDC_ROWS_LIST).Send(LVM_GETITEMCOUNT);
}

void ChooseFilter(const Window& rows, const std::string& text) {
  const Window box = rows.Control(IDC_ROWS_FILTER);
  const LRESULT index = box.Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
  REQUIRE(index >= 0);
  box.Send(CB_SETCURSEL, static_cast<WPARAM>(index));
  rows.Send(WM_COMMAND, MAKEWPARAM(IDC_ROWS_FILTER, CBN_SELCHANGE), reinterpret_cast<LPARAM>(box.Handle()));
}

std::size_t Occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

} // namespace

TEST_CASE("windows and channels are remembered, and a place on no screen is not used") {
  const Bench bench;
  {
    HostProgram host(bench.Arguments("--channel sim"));
    MoveTo(host.Main(), kMain);
    MoveTo(OpenTool(host, 0, "Terminal"), kTerminal);
    MoveTo(OpenRows(host, IDM_TRACE, "Trace"), kTrace);
    host.WaitForText(IDC_CHANNEL_STATE, "open");
    host.CloseMain();
  }
  {
    HostProgram host(bench.Arguments("--channel replay:nothing"));
    host.AnswerErrorLike("The channel cannot be opened: ");
    CheckPlace(host.Main(), kMain);
    CheckPlace(OpenTool(host, 0, "Terminal"), kTerminal);
    CheckPlace(OpenRows(host, IDM_TRACE, "Trace"), kTrace);
    const Window channel = host.Main().Control(IDC_CHANNEL_TEXT);
    CHECK(channel.Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>("sim")) == 0);
    host.CloseMain();
  }
  CHECK(bench.folder.Read("settings.ini").find("channel = sim\r\n\r\n[scripts]") != std::string::npos);
  bench.folder.Write("settings.ini", "[windows]\nDevice host = 5000 90 500 300\nTerminal = 100 -900 400 300\n");
  HostProgram host(bench.Arguments());
  CHECK(host.Main().Place().left < 1000);
  CHECK(OpenTool(host, 0, "Terminal").Place().top >= 0);
  host.CloseMain();
}

TEST_CASE("settings that are damaged, foreign, in use or not to be written: all works, and the log tells once") {
  const Bench bench;
  std::string settings, problem;
  SUBCASE("damaged") {
    settings = "[channels]\nchannel = tcp:localhost:1\nrubbish\n";
    problem = "settings.ini:3: this line is not understood";
  }
  SUBCASE("foreign") {
    settings = std::string("\0\1\2 something else", 18);
    problem = "is no file of settings, and is left alone";
  }
  SUBCASE("read-only") {
    settings = "[channels]\nchannel = tcp:localhost:1\n";
    problem = "cannot be written";
  }
  SUBCASE("in use") {
    settings = "[channels]\nchannel = tcp:localhost:1\n";
    problem = "cannot be read, and is left alone";
  }
  bench.folder.Write("settings.ini", settings);
  const std::string path = bench.folder.PathOf("settings.ini");
  if (problem == "cannot be written")
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  const bool isUnreadable = problem.ends_with("is left alone");
  const HANDLE inUse = problem.starts_with("cannot be read") ? CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                                                                           0, nullptr, OPEN_EXISTING, 0, nullptr)
                                                             : INVALID_HANDLE_VALUE;
  HostProgram host(bench.Arguments());
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  CHECK(host.Main().Control(IDC_CHANNEL_TEXT).Send(CB_GETCOUNT) == (isUnreadable ? 1 : 2));
  host.CloseMain();
  if (inUse != INVALID_HANDLE_VALUE)
    CloseHandle(inUse);
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  CHECK(Occurrences(bench.folder.Read("log.txt"), problem) == 1);
  if (problem.starts_with("settings")) {
    CHECK(bench.folder.Read("settings.ini.old") == settings);
    CHECK(bench.folder.Read("settings.ini").find("channel = tcp:localhost:1") != std::string::npos);
  } else {
    CHECK(bench.folder.Read("settings.ini") == settings);
  }
}

TEST_CASE("everything is forgotten when its user wants that") {
  const Bench bench;
  HostProgram host(bench.Arguments());
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  WaitFor("something to forget", [&] { return bench.folder.Names().size() == 2; });
  host.Main().Send(WM_NULL);
  PostMessageA(host.Main().Handle(), WM_COMMAND, IDM_FORGET, 0);
  host.WaitForTop("Forget everything").PressControl(IDOK);
  WaitFor("the file to go", [&] { return bench.folder.Names().size() == 1; });
  host.CloseMain();
  CHECK(bench.folder.Names() == std::vector<std::string>{"log.txt"});
}

TEST_CASE("a script of the command line, run again from the menu until it is gone") {
  const Bench bench;
  const std::string path =
      bench.Script("id.dcs", "transmitstring(\"id\\r\"); delay(300); print(receivestring(), \"done\\n\");");
  {
    HostProgram host(bench.Arguments(path));
    const Window log = host.WaitForTop("Log");
    const std::string rows = host.WaitForRow(log, "id.dcs: success, after ");
    CHECK(rows.find("sim: open") != std::string::npos);
    CHECK(rows.find("\tscript\t" + path + " begins") != std::string::npos);
    CHECK(rows.find("\toutput\tsimulated device, serial number 1") != std::string::npos);
    CHECK(rows.find("\toutput\tdone") != std::string::npos);
    CHECK(rows.find("\tuse\tondhost uses the channel since ") != std::string::npos);
    host.WaitForText(IDC_USE_TRAFFIC, "3 bytes sent, 35 bytes received");
    CHECK(host.Main().Control(IDC_USE_CALLS).Text() == "3");
    CHECK(host.Main().Control(IDC_USE_HOLDER).Text() == "nobody");
    host.Main().PressControl(IDM_RESET_COUNTERS);
    host.WaitForText(IDC_USE_TRAFFIC, "0 bytes sent, 0 bytes received");
    host.CloseMain();
  }
  HostProgram host(bench.Arguments());
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  host.Main().Send(WM_COMMAND, IDM_FIRST_SCRIPT);
  host.WaitForRow(host.WaitForTop("Log"), "id.dcs: success, after ");
  REQUIRE(DeleteFileA(path.c_str()));
  PostMessageA(host.Main().Handle(), WM_COMMAND, IDM_FIRST_SCRIPT, 0);
  host.AnswerError(path + " is not there, or cannot be read.");
  host.CloseMain();
  CHECK(bench.folder.Read("settings.ini").find("id.dcs") == std::string::npos);
  CHECK(Occurrences(bench.folder.Read("log.txt"), ": success, after ") == 2);
}

TEST_CASE("a dropped script runs, holds the channel, and no other one beside it") {
  const Bench bench;
  HostProgram host(bench.Arguments());
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  host.DropFile(bench.Script("notes.txt", ""));
  host.AnswerError("notes.txt is no script: its name does not end in .dcs.");
  host.DropFile(bench.Script("loop.dcs", "print(\"on\\n\"); while (1 == 1) { delay(10); }"));
  WaitFor("the holder to be told",
          [&] { return host.Main().Control(IDC_USE_HOLDER).Text().starts_with("ondhost, since "); });
  host.DropFile(bench.Script("other.dcs", ""));
  host.AnswerError("loop.dcs is still running. Stop it first, then run other.dcs.");
  host.Main().Send(WM_COMMAND, IDM_STOP_SCRIPT);
  const std::string rows = host.WaitForRow(host.WaitForTop("Log"), "loop.dcs: stopped, after ");
  CHECK(rows.find("\toutput\tProcessing aborted") != std::string::npos);
  host.WaitForText(IDC_USE_HOLDER, "nobody");
  host.DropFile(bench.Script("fails.dcs", "nonsense();"));
  host.WaitForRow(host.WaitForTop("Log"), "fails.dcs: the script failed");
  host.DropFile(bench.folder.PathOf("loop.dcs")); // closing ends it
  host.WaitForRow(host.WaitForTop("Log"), "ondhost uses the channel since ");
  host.CloseMain();
}

TEST_CASE("questions and changes of the channel are events of the trace, which is filtered, copied and stopped") {
  const Bench bench;
  HostProgram host(bench.Arguments("--trace " + bench.folder.PathOf("trace.jsonl")));
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  const Window trace = OpenRows(host, IDM_TRACE, "Trace");
  host.DropFile(bench.Script("ask.dcs", "messagebox(\"Bench\", \"Go on?\"); transmitstring(\"id\\r\");"));
  Window::AnswerBox("Bench", "Go on?", IDOK, host.Process());
  const std::string rows = host.WaitForRow(trace, "Transmit\t3: id.");
  for (const char* const event :
       {"* connect\tchannel \"sim\"", "* opened", "* owner\tnumber \"1\" name \"ondhost\"",
        "* question\tcaption \"Bench\" prompt \"Go on?\" answer \"OK\" by \"user\"", "ondhost\tTransmit"})
    CHECK(rows.find(event) != std::string::npos);

  ChooseFilter(trace, "sent");
  CHECK(Occurrences(host.RowsOf(trace), "\r\n") == 1);
  ChooseFilter(trace, "events");
  const std::string events = host.RowsOf(trace);
  CHECK(Occurrences(events, "\t* ") == Occurrences(events, "\r\n"));
  ChooseFilter(trace, "everything");
  trace.Control(IDC_ROWS_LIST).Focus();
  TypeKey(VK_HOME);
  CHECK(host.RowsOf(trace).find("\t* connect\tchannel \"sim\"\r\n") != std::string::npos);
  CHECK(Occurrences(host.RowsOf(trace), "\r\n") == 1);

  trace.PressControl(IDC_ROWS_PAUSE);
  WaitFor("the pause", [&] { return trace.Control(IDC_ROWS_PAUSE).Checked(); });
  const LRESULT paused = RowCount(trace);
  host.Main().PressControl(IDM_CONNECT);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  CHECK(RowCount(trace) == paused);
  trace.PressControl(IDC_ROWS_PAUSE);
  WaitFor("the row that has come meanwhile", [&] { return RowCount(trace) == paused + 1; });
  host.CloseMain();
  const std::string file = bench.folder.Read("trace.jsonl");
  for (const char* const event : {"\"connect\"", "\"opened\"", "\"owner\"", "\"question\"", "\"disconnect\""})
    CHECK(file.find(std::string("\"event\":") + event) != std::string::npos);
}

TEST_CASE("the Trace window keeps up with a flood") {
  const Bench bench;
  HostProgram host(bench.Arguments());
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  const Window trace = OpenRows(host, IDM_TRACE, "Trace");
  ChooseFilter(trace, "sent");
  const std::string script =
      "var uint32 i; while (i < 100000) { transmitstring(\"x\"); i += 1; } transmitstring(\"last\");";
  host.DropFile(bench.Script("flood.dcs", script));
  const auto begun = GetTickCount64();
  ULONGLONG slowest = 0;
  WaitFor(
      "all calls",
      [&] {
        const auto before = GetTickCount64();
        trace.Send(WM_NULL);
        slowest = std::max(slowest, GetTickCount64() - before);
        return std::atoi(host.Main().Control(IDC_USE_CALLS).Text().c_str()) > 100000;
      },
      60000);
  MESSAGE("100000 calls in " << GetTickCount64() - begun << " ms, the window answered within " << slowest << " ms");
  CHECK(slowest < 2000);
  const Window list = trace.Control(IDC_ROWS_LIST);
  WaitFor("the list to be full and at its end",
          [&] { return RowCount(trace) >= 19990 && list.Send(LVM_GETTOPINDEX) > RowCount(trace) / 2; });
  CHECK(RowCount(trace) <= 20000);
  host.CloseMain();
}
