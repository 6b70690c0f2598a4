// The sample host's main window, from outside: the tools' windows come and go, the channel is changed, and closing ends
// everything whatever is going on.
#include "host/windows/resource.h"
#include "res/resource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/HostProgram.h"
#include "tests/windows/LocalServer.h"

#include <doctest/doctest.h>

#include <iterator>

namespace {

struct Tool {
  const char* button;
  const char* caption;
};
constexpr Tool kTools[] = {
    {"&Terminal", "Terminal"},
    {"&File Manager", "File manager"},
    {"&Script Processor", "Script processor"},
};
constexpr int kTerminal = IDM_FIRST_TOOL;
constexpr int kScriptProcessor = IDM_FIRST_TOOL + 2;

bool IsPressedIn(const Window& button) {
  return button.Send(BM_GETCHECK) == BST_CHECKED;
}

bool HasFocus(const Window& control) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(control.Handle(), nullptr), &info) &&
         (info.hwndFocus == control.Handle() || IsChild(control.Handle(), info.hwndFocus));
}

// The host with its Script Processor shown, and a script that is being run there.
class RunningScript {
public:
  explicit RunningScript(const std::string& script) {
    m_folder.Write("test.dcs", script);
    host.Main().PressControl(kScriptProcessor);
    window = host.WaitForTop("Script processor");
    window.PressControl(IDC_SCRIPT_BROWSE);
    const Window chooser = host.WaitForTop("Open a script file");
    chooser.TypeFileName(m_folder.PathOf("test.dcs"));
    chooser.WaitUntilGone("the file dialog");
    window.PressControl(IDC_SCRIPT_EXECUTE);
    WaitFor("output", [this] { return window.Control(IDC_SCRIPT_LOG).Send(LB_GETCOUNT) > 0; });
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
  std::vector<Window> windows;
  for (int i = 0; i < static_cast<int>(std::size(kTools)); ++i) {
    CAPTURE(kTools[i].caption);
    const Window button = host.Main().Control(IDM_FIRST_TOOL + i);
    CHECK(button.Text() == kTools[i].button);
    CHECK_FALSE(IsPressedIn(button));
    button.Press();
    windows.push_back(host.WaitForTop(kTools[i].caption));
    WaitFor("the button to be pressed in", [&] { return IsPressedIn(button); });
  }
  for (std::size_t i = 0; i < windows.size(); ++i) {
    CAPTURE(kTools[i].caption);
    const Window button = host.Main().Control(IDM_FIRST_TOOL + static_cast<int>(i));
    const auto isHidden = [&] { return !windows[i].Visible() && !IsPressedIn(button); };
    const auto isShown = [&] { return windows[i].Visible() && IsPressedIn(button); };
    windows[i].PressControl(IDOK);
    WaitFor("its Close button to hide it", isHidden);
    button.Press();
    WaitFor("the button to show the same window", isShown);
    windows[i].PressCloseBox();
    WaitFor("its close box to hide it", isHidden);
    button.Press();
    WaitFor("the button to show it again", isShown);
    button.Press();
    WaitFor("the button to hide it", isHidden);
  }
  host.Main().PressCloseBox();
  CHECK(host.WaitForEnd() == 0);
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
  const Window box = host.WaitForTop("Error");
  CHECK(box.BoxText().starts_with("The channel cannot be opened: unknown channel \"sin\"; there are: sim"));
  box.PressControl(IDOK);
  box.WaitUntilGone("the box");
  CHECK(status.Text() == "No communication device...");
  CHECK(main.Control(IDC_CHANNEL_TEXT).Enabled());

  main.Control(IDC_CHANNEL_TEXT).SetText("sim");
  main.PressControl(IDM_CONNECT);
  WaitFor("the tool to show the channel again", [&] { return status.Text() == connected; });
  CHECK(main.Control(IDC_CHANNEL_STATE).Text() == "open");
}

TEST_CASE("a channel that takes its time to open, and one that is lost") {
  LocalServer server;
  HostProgram host("--channel " + server.ChannelText());
  server.Accept();
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  CHECK(host.Main().Control(IDC_CHANNEL_TEXT).Text() == server.ChannelText());
  server.Close();
  WaitFor("the state to tell that the connection is gone",
          [&] { return host.Main().Control(IDC_CHANNEL_STATE).Text().starts_with("closed: "); });
  host.Main().PressControl(IDM_CONNECT);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  host.Main().PressControl(IDM_CONNECT); // nobody listens any more
  const Window box = host.WaitForTop("Error");
  CHECK(box.BoxText().starts_with("The channel cannot be opened: "));
  CHECK(host.Main().Control(IDC_CHANNEL_STATE).Text() == "not connected");
  box.PressControl(IDOK);
  WaitFor("the text to be open to changes", [&] { return host.Main().Control(IDC_CHANNEL_TEXT).Enabled(); });
}

TEST_CASE("a channel that a script uses stays") {
  RunningScript run(R"(print("on\n"); while (1) { })");
  run.host.WaitForText(IDC_CHANNEL_STATE, "open, used by a tool");
  run.host.Main().PressControl(IDM_CONNECT);
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
    run.host.Main().PressCloseBox();
    CHECK(run.host.WaitForEnd() == 0);
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
  const Window chooser = host.WaitForTop("Open job file");
  chooser.TypeFileName(folder.PathOf("test.dcj"));
  chooser.WaitUntilGone("the file dialog");
  WaitFor("something to copy", [&] { return manager.Control(IDC_FM_COPY_ALL).Enabled(); });
  manager.PressControl(IDC_FM_COPY_ALL);
  const Window progress = host.WaitForTop("Progress");
  host.WaitForText(IDC_CHANNEL_STATE, "open, used by a tool");
  host.Main().Send(WM_COMMAND, IDM_FIRST_TOOL + 1); // does not hide what is busy
  CHECK(manager.Visible());
  CHECK(progress.Visible());
  host.Main().PressCloseBox();
  CHECK(host.WaitForEnd() == 0);
}

TEST_CASE("closing the main window while a tool asks something") {
  HostProgram host;
  host.Main().PressControl(kScriptProcessor);
  host.WaitForTop("Script processor").PressControl(IDC_SCRIPT_BROWSE);
  host.WaitForTop("Open a script file");
  host.Main().PressCloseBox();
  CHECK(host.WaitForEnd() == 0);
}

TEST_CASE("what cannot be had is said, and the rest works") {
  SUBCASE("the channel of the command line") {
    HostProgram host("--channel nowhere");
    const Window box = host.WaitForTop("Error");
    CHECK(box.BoxText().find("unknown channel \"nowhere\"") != std::string::npos);
    box.PressControl(IDOK);
    host.WaitForText(IDC_CHANNEL_STATE, "not connected");
    host.Main().Control(IDC_CHANNEL_TEXT).SetText("sim");
    host.Main().PressControl(IDM_CONNECT);
    host.WaitForText(IDC_CHANNEL_STATE, "open");
    host.Main().PressCloseBox();
    CHECK(host.WaitForEnd() == 0);
  }
  SUBCASE("the module") {
    const TemporaryFolder folder;
    const std::string alone = folder.PathOf("ondhost.exe");
    REQUIRE(CopyFileA(TestedHostPath().c_str(), alone.c_str(), TRUE));
    HostProgram host("", alone);
    const Window box = host.WaitForTop("Error");
    const std::string problem = "cannot load " + folder.PathOf("OndDeviceClient.dll") + ": ";
    CHECK(box.BoxText().starts_with("The tools are missing: " + problem));
    box.PressControl(IDOK);
    host.WaitForText(IDC_CHANNEL_STATE, "open");
    CHECK(host.Main().Control(IDC_TOOLS_PROBLEM).Text().starts_with(problem));
    host.Main().PressCloseBox();
    CHECK(host.WaitForEnd() == 0);
  }
}

TEST_CASE("the keyboard alone") {
  HostProgram host;
  const Window main = host.Main();
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  main.Activate();
  const auto waitForFocus = [&](int id) {
    WaitFor("the focus on control " + std::to_string(id), [&] { return HasFocus(main.Control(id)); });
  };
  waitForFocus(IDM_CONNECT); // the channel's text cannot be changed now
  TypeKey(VK_TAB);
  waitForFocus(kTerminal);
  TypeKey(VK_RETURN);
  const Window terminal = host.WaitForTop("Terminal");
  main.Activate();
  waitForFocus(kTerminal);
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
  waitForFocus(IDC_CHANNEL_TEXT);
  TypeKey(VK_RETURN);
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  waitForFocus(IDM_CONNECT);
  TypeKeyWith(VK_MENU, VK_F4);
  CHECK(host.WaitForEnd() == 0);
}
