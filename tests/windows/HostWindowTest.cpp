// The sample host's main window, from outside: the tools' windows come and go, the channel is changed, and closing ends
// everything whatever is going on.
#include "host/windows/resource.h"
#include "res/resource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/HostProgram.h"

#include <doctest/doctest.h>

#include <commctrl.h>
#include <cstdlib>
#include <iterator>
#include <numeric>
#include <winsock2.h>

namespace {

const struct {
  const char* button;
  const char* caption;
} kTools[] = {{"&Terminal", "Terminal"}, {"&File Manager", "File manager"}, {"&Script Processor", "Script processor"}};
constexpr int kTerminal = IDM_FIRST_TOOL;
constexpr int kScriptProcessor = IDM_FIRST_TOOL + 2;

// A device at the other end of a TCP connection, on this machine.
class LocalServer {
public:
  // Listens on a port of the system's choice.
  LocalServer() {
    WSADATA data{};
    REQUIRE(WSAStartup(MAKEWORD(2, 2), &data) == 0);
    m_listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    REQUIRE(bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) == 0);
    REQUIRE(listen(m_listener, 1) == 0);
    REQUIRE(getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) == 0);
    channelText = "tcp:127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  }
  ~LocalServer() { WSACleanup(); } // and with it, what a failed test left open

  // Once the host has connected: hangs up, and listens no more.
  void Close() {
    closesocket(accept(m_listener, nullptr, nullptr));
    closesocket(m_listener);
  }

  std::string channelText;

private:
  SOCKET m_listener;
};

// The host with its Script Processor shown, and a script that is being run there.
class RunningScript {
public:
  explicit RunningScript(const std::string& script) {
    m_folder.Write("test.dcs", script);
    host.Main().PressControl(kScriptProcessor);
    window = host.WaitForTop("Script processor");
    window.PressControl(IDC_SCRIPT_BROWSE);
    host.ChooseFile("Open a script file", m_folder.PathOf("test.dcs"));
    window.PressControl(IDC_SCRIPT_EXECUTE);
    WaitFor("output", [this] { return window.Control(IDC_SCRIPT_LOG).ItemCount() > 0; });
  }

private:
  TemporaryFolder m_folder;

public:
  HostProgram host; // ends before the folder goes
  Window window;
};

} // namespace

TEST_CASE("each tool's window comes and goes, and its button tells") {
  HostProgram host;
  for (int i = 0; i < static_cast<int>(std::size(kTools)); ++i) {
    CAPTURE(kTools[i].caption);
    const Window button = host.Main().Control(IDM_FIRST_TOOL + i);
    CHECK(button.Text() == kTools[i].button);
    CHECK_FALSE(button.Checked());
    button.Press();
    const Window window = host.WaitForTop(kTools[i].caption);
    const auto isHidden = [&] { return !window.Visible() && !button.Checked(); };
    const auto isShown = [&] { return window.Visible() && button.Checked(); };
    WaitFor("the button to be pressed in", isShown);
    window.PressControl(IDOK);
    WaitFor("its Close button to hide it", isHidden);
    button.Press();
    WaitFor("the button to show the same window", isShown);
    window.PressCloseBox();
    WaitFor("its close box to hide it", isHidden);
    button.Press();
    WaitFor("the button to show it again", isShown);
    button.Press();
    WaitFor("the button to hide it", isHidden);
    button.Press(); // it stands there while the others come
  }
  host.CloseMain();
}

TEST_CASE("the tools' windows do not hide each other's titles, and keep their places") {
  HostProgram host;
  std::vector<Window> windows;
  for (int i = 0; i < static_cast<int>(std::size(kTools)); ++i) {
    host.Main().PressControl(IDM_FIRST_TOOL + i);
    windows.push_back(host.WaitForTop(kTools[i].caption));
    WaitFor("the button to be pressed in", [&] { return host.Main().Control(IDM_FIRST_TOOL + i).Checked(); });
  }
  windows.push_back(host.Main());
  const int title = GetSystemMetrics(SM_CYCAPTION);
  for (const Window& one : windows) {
    for (const Window& other : windows) {
      const RECT a = one.Place(), b = other.Place();
      CHECK((one.Handle() == other.Handle() || std::abs(a.left - b.left) > title || std::abs(a.top - b.top) > title));
    }
  }
  const Window moved = windows.front();
  SetWindowPos(moved.Handle(), nullptr, 77, 333, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  moved.PressControl(IDOK);
  moved.WaitUntilGone("the Terminal");
  host.Main().PressControl(kTerminal);
  WaitFor("the Terminal to come back", [&] { return moved.Visible(); });
  CHECK(moved.Place().left == 77);
  CHECK(moved.Place().top == 333);
  host.CloseMain();
}

TEST_CASE("the channel is disconnected and connected under an open tool") {
  HostProgram host;
  const Window main = host.Main();
  main.PressControl(kScriptProcessor);
  const Window status = host.WaitForTop("Script processor").Control(IDC_SCRIPT_CONFIGURATION);
  const std::string connected =
      "Channel description: Simulated device\nChannel configuration: 8192 blocks of 512 bytes\nState: open";
  WaitFor("the tool to show the channel", [&] { return status.Text() == connected; });
  CHECK_FALSE(main.Control(IDC_CHANNEL_TEXT).Enabled());
  CHECK(main.Control(IDM_CONNECT).Text() == "&Disconnect");

  main.PressControl(IDM_CONNECT);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  CHECK(main.Control(IDC_CHANNEL_DESCRIPTION).Text().empty());
  WaitFor("the tool to be disconnected", [&] { return status.Text() == "No communication device..."; });

  main.Control(IDC_CHANNEL_TEXT).SetText("sin");
  main.PressControl(IDM_CONNECT);
  host.AnswerErrorLike("The channel cannot be opened: unknown channel \"sin\"; there are: sim");
  CHECK(status.Text() == "No communication device...");
  CHECK(main.Control(IDC_CHANNEL_TEXT).Enabled());

  main.Control(IDC_CHANNEL_TEXT).SetText("sim");
  main.PressControl(IDM_CONNECT);
  WaitFor("the tool to show the channel again", [&] { return status.Text() == connected; });
  CHECK(main.Control(IDC_CHANNEL_STATE).Text() == "open");
}

TEST_CASE("a channel that takes its time to open, and one that is lost") {
  LocalServer server;
  HostProgram host("--channel " + server.channelText);
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  CHECK(host.Main().Control(IDC_CHANNEL_TEXT).Text() == server.channelText);
  server.Close();
  WaitFor("the state to tell that the connection is gone",
          [&] { return host.Main().Control(IDC_CHANNEL_STATE).Text().starts_with("closed: "); });
  host.Main().PressControl(IDM_CONNECT);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  host.Main().PressControl(IDM_CONNECT); // nobody listens any more
  host.AnswerErrorLike("The channel cannot be opened: ");
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  WaitFor("the text to be open to changes", [&] { return host.Main().Control(IDC_CHANNEL_TEXT).Enabled(); });
}

TEST_CASE("a channel that a script uses stays") {
  RunningScript run(R"(print("on\n"); while (1) { })");
  run.host.WaitForText(IDC_CHANNEL_STATE, "open, used by a tool");
  run.host.Main().PressControl(IDM_CONNECT);
  const RECT main = run.host.Main().Place(), box = run.host.WaitForTop("Error").Place();
  CHECK(box.left == std::midpoint(main.left, main.right) - (box.right - box.left) / 2);
  run.host.AnswerError("A tool uses the channel just now. Stop its script or its copy first.");
  run.window.PressControl(IDC_SCRIPT_EXECUTE);
  run.host.AnswerError("Error executing script: Error 21");
  run.host.WaitForText(IDC_CHANNEL_STATE, "open");
  run.host.Main().PressControl(IDM_CONNECT);
  run.host.WaitForText(IDC_CHANNEL_STATE, "not connected");
}

TEST_CASE("closing the main window ends whatever a script does") {
  const char* const scripts[] = {
      R"(print("on\n"); while (1) { })",
      R"(print("on\n"); while (1) { print("flood\n"); })",
      R"(print("on\n"); while (1) { transmitstring("id\n"); })",
      R"(print("on\n"); delay(100000);)",
      R"(print("on\n"); messagebox("Question", "Go on?");)",
  };
  for (const char* const script : scripts) {
    CAPTURE(script);
    RunningScript run(script);
    if (std::string(script).find("messagebox") != std::string::npos)
      run.host.WaitForTop("Question");
    run.host.CloseMain();
  }
}

TEST_CASE("closing the main window ends a copy") {
  const TemporaryFolder folder;
  folder.Write("big.bin", std::string(200000, 'x'));
  folder.Write("test.dcj", "big.bin\t1\t1\tnormal\n");
  HostProgram host("--block-time 100"); // half a minute for the file
  host.Main().PressControl(IDM_FIRST_TOOL + 1);
  const Window manager = host.WaitForTop("File manager");
  manager.PressControl(IDC_FM_LOAD_JOB);
  host.ChooseFile("Open job file", folder.PathOf("test.dcj"));
  WaitFor("something to copy", [&] { return manager.Control(IDC_FM_COPY_ALL).Enabled(); });
  manager.PressControl(IDC_FM_COPY_ALL);
  const Window progress = host.WaitForTop("Progress");
  host.WaitForText(IDC_CHANNEL_STATE, "open, used by a tool");
  host.Main().Send(WM_COMMAND, IDM_FIRST_TOOL + 1); // does not hide what is busy
  CHECK(manager.Visible());
  CHECK(progress.Visible());
  host.CloseMain();
}

TEST_CASE("closing the main window while a tool asks something") {
  HostProgram host;
  host.Main().PressControl(kScriptProcessor);
  host.WaitForTop("Script processor").PressControl(IDC_SCRIPT_BROWSE);
  host.WaitForTop("Open a script file");
  host.CloseMain();
}

TEST_CASE("what cannot be had is said, and the rest works") {
  SUBCASE("the channel of the command line") {
    HostProgram host("--channel nowhere");
    host.AnswerErrorLike("The channel cannot be opened: unknown channel \"nowhere\"");
    host.WaitForText(IDC_CHANNEL_STATE, "not connected");
    host.Main().Control(IDC_CHANNEL_TEXT).SetText("sim");
    host.Main().PressControl(IDM_CONNECT);
    host.WaitForText(IDC_CHANNEL_STATE, "open");
    host.CloseMain();
  }
  SUBCASE("the module") {
    const TemporaryFolder folder;
    const std::string alone = folder.PathOf("ondhost.exe");
    REQUIRE(CopyFileA(TestedHostPath().c_str(), alone.c_str(), TRUE));
    HostProgram host("", alone);
    const std::string problem = "cannot load " + folder.PathOf("OndDeviceClient.dll") + ": ";
    host.AnswerErrorLike("The tools are missing: " + problem);
    host.WaitForText(IDC_CHANNEL_STATE, "open");
    CHECK(host.Main().Control(IDC_TOOLS_PROBLEM).Text().starts_with(problem));
    host.CloseMain();
  }
}

TEST_CASE("the keyboard alone") {
  HostProgram host;
  const Window main = host.Main();
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  main.Activate();
  main.Control(IDM_CONNECT).WaitForFocus(); // the channel's text cannot be changed now
  TypeKey(VK_TAB);
  main.Control(IDM_RESET_COUNTERS).WaitForFocus();
  TypeKey(VK_TAB);
  main.Control(kTerminal).WaitForFocus();
  TypeKey(VK_RETURN);
  const Window terminal = host.WaitForTop("Terminal");
  main.Activate();
  main.Control(kTerminal).WaitForFocus();
  TypeKeyWith(VK_CONTROL, '1');
  terminal.WaitUntilGone("the Terminal");
  TypeKey(VK_ESCAPE); // not for the main window
  TypeKeyWith(VK_MENU, 'S');
  const Window processor = host.WaitForTop("Script processor");
  WaitFor("the Script Processor to come to the front", [&] { return GetForegroundWindow() == processor.Handle(); });
  TypeKey(VK_ESCAPE);
  processor.WaitUntilGone("the Script Processor");
  main.Activate();
  TypeKey(VK_F5);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  TypeKeyWith(VK_MENU, 'A');
  main.Control(IDC_CHANNEL_TEXT).WaitForFocus();
  TypeKey(VK_RETURN);
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  main.Control(IDM_CONNECT).WaitForFocus();
  TypeKeyWith(VK_MENU, VK_F4);
  host.WaitForEnd();
}

TEST_CASE("the Trace window shows what the tools do, keeps the last of a flood and goes away") {
  const RunningScript run("print(\"begun\\n\"); while (1 == 1) { transmitstring(\"x\"); }");
  run.host.Main().Send(WM_COMMAND, IDM_TRACE);
  const Window trace = run.host.WaitForTop("Trace");
  const auto rows = [&] { return trace.Control(IDC_ROWS_LIST).Send(LVM_GETITEMCOUNT); };
  constexpr LRESULT kMostRows = 20000;
  WaitFor("the list to be full", [&] { return rows() == kMostRows; });
  trace.PressControl(IDC_ROWS_CLEAR);
  WaitFor("the list to fill again", [&] { return rows() == kMostRows; });
  const auto last = [&] { return trace.Control(IDC_ROWS_LIST).Send(LVM_GETTOPINDEX); };
  WaitFor("the list to follow", [&] { return last() > kMostRows / 2; });
  trace.PressCloseBox();
  WaitFor("its close box to hide it", [&] { return !trace.Visible(); });
  run.host.CloseMain();
}
