// The Script Processor's window: scripts run, write their log, and end, whatever happens to the window.
#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

#include <atomic>

namespace {

constexpr const char* kCaption = "Script processor";

class ScriptChannel : public GuardedChannel {
public:
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    GuardedChannel::GetInfoString(what, code);
    return what == OND_INFO_ERROR && code == EONX_ERR_SCRIPT ? "the script failed" : "channel";
  }
  // Only runs wait for the channel.
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    const std::int32_t answer = GuardedChannel::Lock(owner, timeoutMs);
    runs += timeoutMs != 0 && answer == 0;
    return answer;
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    GuardedChannel::Transmit(data, length, written);
    ++transmits;
    return 0;
  }

  std::atomic<int> runs = 0, transmits = 0;
};

using Lines = std::vector<std::string>;

// In one text, for messages that can be read.
std::string Shown(const Lines& lines) {
  std::string shown;
  for (const std::string& line : lines)
    shown += "[" + line + "]";
  return shown;
}

// A host whose Script Processor is shown on a channel, and a folder for its scripts.
struct Bench {
  TestHost host;
  TemporaryFolder folder;
  ScriptChannel channel;
  TestClient client{host, ONX_OBJ_SCRIPT_PROCESSOR};
  Window window = client.Show(kCaption);
  Window log = window.Control(IDC_SCRIPT_LOG);
  Window execute = window.Control(IDC_SCRIPT_EXECUTE);

  Bench() { client.Connect(&channel); }

  // Chooses a script by the "..." button as a user does: the system's dialog, a typed name.
  void Choose(const std::string& path) const {
    window.PressControl(IDC_SCRIPT_BROWSE);
    const Window chooser = Window::WaitForTop("Open a script file");
    chooser.TypeFileName(path);
    chooser.WaitUntilGone("the file dialog");
    WaitFor("the window to show the path", [&] { return window.Control(IDC_SCRIPT_PATH).Text() == path; });
  }
  void Start(const std::string& script) const {
    folder.Write("test.dcs", script);
    if (window.Control(IDC_SCRIPT_PATH).Text() != folder.PathOf("test.dcs"))
      Choose(folder.PathOf("test.dcs"));
    execute.Press();
  }
  void WaitForEnd() const {
    WaitFor(
        "the script to end", [&] { return channel.LockDepth() == 0 && execute.Text() == "Execute script"; });
  }
  // Runs a script that succeeds; the log afterwards.
  std::vector<std::string> Run(const std::string& script) const {
    const int locks = channel.runs;
    Start(script);
    WaitFor("the run to begin", [&] { return channel.runs > locks; });
    host.Settle(); // the press has been handled, so the button says "Stop script" until the end
    WaitFor("the script to end", [&] {
      if (Window::FindTop("Error").Exists())
        FAIL("the script failed: " << Shown(log.Items()));
      return execute.Text() == "Execute script";
    });
    return log.Items();
  }
  void WaitForLine(const std::string& line) const {
    WaitFor(
        "the log line \"" + line + "\"",
        [&] {
          const auto items = log.Items();
          return !items.empty() && items.back() == line;
        });
  }
};

} // namespace

TEST_CASE("the window is laid out as its users know it") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  struct Control {
    int id;
    const char* kind;
    const char* text;
    RECT place; // dialog units: left, top, width, height
  };
  const Control controls[] = {
      {4052, "Static", "No communication device...", {3, 3, 266, 44}},
      {4053, "Static", "Log", {3, 50, 13, 8}},
      {4051, "ListBox", "", {3, 60, 266, 188}},
      {4050, "Static", "Script file", {3, 253, 30, 14}},
      {4047, "Static", "", {36, 253, 215, 14}},
      {4046, "Button", "...", {255, 253, 14, 14}},
      {4055, "Button", "Copy", {3, 272, 50, 14}},
      {4054, "Button", "New script", {57, 272, 50, 14}},
      {4049, "Button", "Edit script", {111, 272, 50, 14}},
      {4048, "Button", "Execute script", {165, 272, 50, 14}},
      {1, "Button", "Close", {219, 272, 50, 14}},
  };
  HWND inTabOrder = GetWindow(window.Handle(), GW_CHILD);
  for (const Control& expected : controls) {
    CAPTURE(expected.id);
    REQUIRE(inTabOrder != nullptr);
    const Window control(inTabOrder);
    CHECK(GetDlgCtrlID(inTabOrder) == expected.id);
    char kind[32] = "";
    GetClassNameA(inTabOrder, kind, sizeof(kind));
    CHECK(std::string(kind) == expected.kind);
    CHECK(control.Text() == expected.text);
    RECT place = expected.place; // position and size are mapped, and rounded, by themselves
    MapDialogRect(window.Handle(), &place);
    const RECT actual = control.PlaceInside();
    CHECK(actual.left == place.left);
    CHECK(actual.top == place.top);
    CHECK(actual.right - actual.left == place.right);
    CHECK(actual.bottom - actual.top == place.bottom);
    inTabOrder = GetWindow(inTabOrder, GW_HWNDNEXT);
  }
  CHECK(inTabOrder == nullptr);
  CHECK_FALSE(window.Control(4049).Enabled());
  CHECK_FALSE(window.Control(4048).Enabled());
  RECT client_{0, 0, 272, 289};
  MapDialogRect(window.Handle(), &client_);
  CHECK(window.ClientSize().cx == client_.right);
  CHECK(window.ClientSize().cy == client_.bottom);
}

TEST_CASE("the window cannot be made narrower than it was, nor lower than 250 pixels") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  const RECT before = window.Place();
  window.Resize(50, 50);
  const RECT after = window.Place();
  CHECK(after.right - after.left == before.right - before.left);
  CHECK(after.bottom - after.top == 250);
}

TEST_CASE("the log's lines") {
  const Bench bench;
  struct Case {
    std::string name;
    const char* script;
    Lines lines;
  };
  const Case cases[] = {
      {"overwritten from its start", R"(print("abc\rX\n");)", {"Xbc"}},
      {"continued by the next output", R"(print("ab"); print("c\n");)", {"abc"}},
      {"empty lines stand", R"(print("\n\na\n");)", {"", "", "a"}},
      {"without a line feed at the end", R"(print("a\nb");)", {"a", "b"}},
      {"overwritten across outputs", R"(print("12345"); print("\rab"); print("c\n"); print("d");)", {"abc45", "d"}},
      {"overwriting ends at a line feed", R"(print("abc\r\nX");)", {"abc", "X"}},
      {"overwriting goes on behind the line's end", R"(print("ab\rXYZ!\n");)", {"XYZ!"}},
      {"all other bytes are shown", R"(print("\(1)\t\(x7F)\(xE4)\(xFF)\n");)", {"\x01\t\x7F\xE4\xFF"}},
      {"nothing", "", {}},
  };
  for (const Case& c : cases) {
    CAPTURE(c.name);
    CHECK(Shown(bench.Run(c.script)) == Shown(c.lines));
  }
}

TEST_CASE("an unfinished line of one run does not reach into the next") {
  const Bench bench;
  CHECK(Shown(bench.Run(R"(print("12345");)")) == Shown(Lines{"12345"}));
  CHECK(Shown(bench.Run(R"(print("ab");)")) == Shown(Lines{"ab"}));
}

TEST_CASE("the log keeps the last 5001 lines and scrolls to the end") {
  const Bench bench;
  const Lines items = bench.Run(R"(var dword i; i = 0; while (i < 5003) { print(numtostr(i) + "\n"); i = i + 1; })");
  REQUIRE(items.size() == 5001);
  CHECK(items.front() == "2");
  CHECK(items.back() == "5002");
  const LRESULT top = bench.log.Send(LB_GETTOPINDEX);
  RECT last{};
  bench.log.Send(LB_GETITEMRECT, 5000, reinterpret_cast<LPARAM>(&last));
  CHECK(top > 4900);
  CHECK(last.top < bench.log.ClientSize().cy);
}

TEST_CASE("horizontal scrolling covers the widest line that is there") {
  const Bench bench;
  bench.Run(R"(print("short\n"); print("a line that is quite a bit longer than the other one\n"); print("x\n");)");
  const LRESULT wide = bench.log.Send(LB_GETHORIZONTALEXTENT);
  bench.Run(R"(print("short\n"); print("x\n");)");
  const LRESULT narrow = bench.log.Send(LB_GETHORIZONTALEXTENT);
  CHECK(narrow > 0);
  CHECK(wide * 5 == narrow * 52); // the log's font has one width
  // A wide line leaves with the first lines.
  bench.Run(R"(var dword i; print("a wide line that goes away\n"); i = 0;
               while (i < 5001) { print("short\n"); i = i + 1; })");
  CHECK(bench.log.Send(LB_GETHORIZONTALEXTENT) == narrow);
  bench.Run("");
  CHECK(bench.log.Send(LB_GETHORIZONTALEXTENT) == 0);
}

TEST_CASE("a failed script shows its diagnostic in the log, then a box") {
  const Bench bench;
  bench.Start(R"(var dword d; print("a\n"); d = 1 / d;)");
  Window::AnswerBox("Error", "Error executing script: the script failed");
  bench.WaitForEnd();
  const std::string log = Shown(bench.log.Items());
  CHECK(log.starts_with("[a][Division by 0 error near line 1/"));
  CHECK(log.ends_with(" during executing]"));
}

TEST_CASE("failures before a script runs") {
  Bench bench;
  bench.Run(R"(print("old\n");)");

  SUBCASE("no channel") {
    bench.client.Connect(nullptr);
    bench.execute.Press();
    Window::AnswerBox("Error", "No communication device available!");
    CHECK(bench.execute.Text() == "Execute script");
    CHECK(bench.log.Items().empty()); // cleared at every start
  }
  SUBCASE("the file was deleted after it was chosen") {
    DeleteFileA(bench.folder.PathOf("test.dcs").c_str());
    bench.execute.Press();
    Window::AnswerBox("Error", "Error executing script: channel");
    bench.WaitForEnd();
  }
  SUBCASE("somebody else holds the channel") {
    int other = 0;
    REQUIRE(bench.channel.Lock(&other, 0) == 0);
    bench.execute.Press();
    Window::AnswerBox("Error", "Error executing script: channel");
    bench.channel.Unlock(&other);
  }
}

TEST_CASE("Stop ends a script, and the same button starts the next one") {
  const Bench bench;
  bench.Start(R"(print("on\n"); while (1) { })");
  bench.WaitForLine("on");
  CHECK(bench.execute.Text() == "Stop script");
  bench.execute.Press();
  Window::AnswerBox("Error", "Error executing script: the script failed");
  bench.WaitForEnd();
  CHECK(bench.log.Items().back().starts_with("Processing aborted"));
  CHECK(Shown(bench.Run(R"(print("again\n");)")) == "[again]");
}

TEST_CASE("a window that goes away ends its script") {
  Bench bench;
  const char* const scripts[] = {
      R"(print("on\n"); while (1) { })",
      R"(print("on\n"); while (1) { print("flood\n"); })",
      R"(print("on\n"); while (1) { transmitstring("x"); })",
  };
  for (const char* const script : scripts) {
    CAPTURE(script);
    bench.Start(script);
    WaitFor("output", [&] { return bench.log.Send(LB_GETCOUNT) > 0; });
    SUBCASE("destroyed from outside") {
      bench.host.Do([&] { DestroyWindow(bench.window.Handle()); });
      CHECK(bench.channel.LockDepth() == 0);
      bench.window = bench.client.Show(kCaption);
    }
    SUBCASE("with its object") {
      bench.client.Delete();
      CHECK(bench.channel.LockDepth() == 0);
      break;
    }
    bench.log = bench.window.Control(IDC_SCRIPT_LOG);
    bench.execute = bench.window.Control(IDC_SCRIPT_EXECUTE);
  }
}

TEST_CASE("hiding the window does not disturb its script") {
  const Bench bench;
  bench.Start(R"(print("on\n"); while (1) { transmitstring("x"); })");
  bench.WaitForLine("on");
  bench.window.PressControl(IDOK);
  bench.window.WaitUntilGone("the window");
  const int before = bench.channel.transmits;
  WaitFor("the hidden window's script to go on", [&] { return bench.channel.transmits > before + 10; });
  bench.client.Show(kCaption);
  bench.execute.Press();
  Window::AnswerBox("Error", "Error executing script: the script failed");
  bench.WaitForEnd();
}

TEST_CASE("the channel is taken away during a run") {
  const Bench bench;
  bench.Start(R"(print("on\n"); while (1) { transmitstring("x"); })");
  bench.WaitForLine("on");
  bench.client.Connect(nullptr); // the run keeps what it began with
  CHECK(bench.channel.LockDepth() > 0);
  bench.execute.Press();
  Window::AnswerBox("Error", "Error executing script: 21");
  WaitFor("the lock to go back to the channel that gave it", [&] { return bench.channel.LockDepth() == 0; });
}
