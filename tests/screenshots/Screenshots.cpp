// Shows every window of the module in states that fill it, and stops at each for `take` to take its picture: writes
// "shot NAME WIDTHxHEIGHT+LEFT+TOP" and waits for a line.
#include "host/windows/resource.h"
#include "tests/windows/FileManagerBench.h"
#include "tests/windows/HostProgram.h"
#include "tests/windows/ScriptBench.h"
#include "tests/windows/TerminalWindow.h"

#include <cstdio>
#include <iostream>

namespace {

void ShootPlace(const RECT& place, const char* name) {
  std::printf("shot %s %ldx%ld+%ld+%ld\n", name, place.right - place.left, place.bottom - place.top, place.left,
              place.top);
  std::fflush(stdout);
  std::string line;
  std::getline(std::cin, line);
}

void Redraw(const Window& window) {
  window.Activate();
  RedrawWindow(window.Handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  window.Send(WM_NULL);
}

void Shoot(const Window& window, const char* name) {
  Redraw(window);
  ShootPlace(window.Place(), name);
}

} // namespace

TEST_CASE("Script Processor") {
  ScriptBench bench;
  Shoot(bench.window, "script-empty");
  bench.Run(R"(var dword i; while (i < 60) { print("line ", i, " of a log that scrolls\n"); i += 1; }
               print("\ta tab, an umlaut \(xE4), and a line that is so long that it can only be read by scrolling to the "
                     + "right, all the way\n[==============>            ]");)");
  Shoot(bench.window, "script-log");
  bench.window.PressControl(IDC_SCRIPT_BROWSE);
  const std::string path = "C:\\bench\\a folder with a long name\\and another one in it\\last year's\\calibrate.dcs";
  Window::ChooseFile("Open a script file", path);
  WaitFor("the path", [&] { return bench.window.Control(IDC_SCRIPT_PATH).Text() == path; });
  bench.window.Resize(0, 0);
  Shoot(bench.window, "script-smallest");
  bench.Start("nonsense();");
  Shoot(Window::WaitForTop("Error"), "script-error");
  Window::WaitForTop("Error").PressControl(IDOK);
  bench.WaitForEnd();
}

TEST_CASE("Questions") {
  ScriptBench bench;
  const auto shoot = [&](const char* script, const char* name) {
    bench.Start(script);
    const Window question = Window::WaitForTop("Calibration");
    Shoot(question, name);
    question.PressCloseBox();
    bench.WaitForEnd();
  };
  shoot(R"(userinputuint32("Calibration", "Reference resistance in ohms, as it is printed on the decade box", 1000);)",
        "question-number");
  shoot(R"(userinputstring("Calibration", "", "SN-0001");)", "question-text");
  shoot(R"(userlistinput("Calibration", "Range", "1 V\0" + "10 V, the one for most measurements here\0" + "auto", 1);)",
        "question-list");
  shoot(R"(messagebox("Calibration", "Connect the probe to the reference, then press OK.");)", "question-message");

  const std::string text =
      R"(var string s; var dword i; while (i < COUNT) { s += numtostr(i) + ". Read this.\n"; i += 1; } )";
  const std::string endless =
      R"(var string s; var dword i; while (i < COUNT) { s += numtostr(i) + ".Read_this."; i += 1; } )";
  const auto shootMany = [&](std::string script, const std::string& count, const char* call, const char* name) {
    script.replace(script.find("COUNT"), 5, count);
    shoot((script + call).c_str(), name);
  };
  const char* const number = R"(userinputdword("Calibration", s, 1);)";
  const char* const item = R"(userlistinput("Calibration", s, "1 V\0" + "10 V", 0);)";
  const char* const message = R"(messagebox("Calibration", s);)";
  shootMany(text, "30", number, "question-30-lines");
  shootMany(text, "500", number, "question-500-lines");
  shootMany(text, "500", item, "question-list-500-lines");
  shootMany(endless, "100", number, "question-endless");
  shootMany(text, "30", message, "question-message-30-lines");
  shootMany(text, "500", message, "question-message-500-lines");
  shootMany(endless, "100", message, "question-message-endless");
}

TEST_CASE("Sample host") {
  const HostProgram host;
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  Shoot(host.Main(), "host-open");
  for (int tool = 0; tool < 3; ++tool) {
    const Window button = host.Main().Control(IDM_FIRST_TOOL + tool);
    button.Press();
    WaitFor("the tool's window", [&] { return button.Checked(); });
  }
  for (const char* caption : {"Device host", "Terminal", "File manager", "Script processor"})
    Redraw(host.WaitForTop(caption));
  ShootPlace({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}, "host-tools");
  for (int tool = 0; tool < 3; ++tool)
    host.Main().PressControl(IDM_FIRST_TOOL + tool);
  host.Main().PressControl(IDM_CONNECT);
  host.WaitForText(IDC_CHANNEL_STATE, "not connected");
  host.Main().Resize(900, 0);
  host.Main().PressControl(IDM_FIRST_TOOL);
  host.WaitForTop("Terminal");
  Shoot(host.Main(), "host-wide");
  host.Main().Control(IDC_CHANNEL_TEXT).SetText("tcp:nowhere");
  host.Main().PressControl(IDM_CONNECT);
  Shoot(host.WaitForTop("Error"), "host-error");
}

TEST_CASE("Terminal") {
  TerminalWindow terminal;
  terminal.Receive({"firmware 1.0, no logic\r\ninstrument ready, umlaut \xE4\r\n",
                    "a long line of readings: 1.001 1.002 1.003 1.004 1.005 1.006 1.007 1.008 1.009 1.010 1.011\r\n"});
  terminal.Send("adc 1\\(13)");
  Shoot(terminal.window, "terminal");
  terminal.window.Resize(0, 0);
  Shoot(terminal.window, "terminal-smallest");
}

TEST_CASE("File Manager") {
  FileManagerBench bench;
  bench.device.directory = {{1, 1, 1500}, {2, 3, 640}, {7, 1, 48}};
  bench.Drop({"C:\\bench\\firmware.rbf", "C:\\bench\\table.bin"});
  bench.Press(IDC_FM_REFRESH);
  bench.Local().Select({1});
  Shoot(bench.window, "filemanager");

  bench.TypeInList(VK_SPACE);
  const Window properties = Window::WaitForTop("File properties");
  Shoot(properties, "filemanager-properties");
  properties.PressControl(IDCANCEL);
  properties.WaitUntilGone("the properties");

  bench.device.hold = true;
  bench.Press(IDC_FM_COPY_ALL);
  const Window progress = Window::WaitForTop("Progress");
  WaitFor("the transfer to begin", [&] { return bench.device.transfers > 0; });
  Shoot(progress, "filemanager-progress");
  progress.PressControl(IDCANCEL);
  Window::WaitForTop("Error").PressControl(IDOK);
  bench.WaitUntilIdle();

  bench.device.hold = false;
  bench.Drop(std::vector<std::string>(200, "C:\\bench\\a file that is not there.bin"));
  bench.device.Fail("TransmitFile", std::deque<std::int32_t>(202, 5));
  bench.Press(IDC_FM_COPY_ALL);
  Shoot(Window::WaitForTop("Error"), "filemanager-report");
  Window::WaitForTop("Error").PressControl(IDOK);
  bench.WaitUntilIdle();
}
