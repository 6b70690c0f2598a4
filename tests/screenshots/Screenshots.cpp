// Shows every window of the module in states that fill it, and stops at each for `take` to take its picture: writes
// "shot NAME WIDTHxHEIGHT+LEFT+TOP" and waits for a line.
#include "host/windows/resource.h"
#include "tests/windows/FileManagerBench.h"
#include "tests/windows/HostProgram.h"
#include "tests/windows/support/StepRunner.h"

#include <cstdio>
#include <fstream>
#include <iostream>

namespace {

void ShootPlace(const RECT& place, const std::string& name) {
  std::printf("shot %s %ldx%ld+%ld+%ld\n", name.c_str(), place.right - place.left, place.bottom - place.top, place.left,
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

void Shoot(const Window& window, const std::string& name) {
  Redraw(window);
  ShootPlace(window.Place(), name);
}

} // namespace

TEST_CASE("Script Processor") {
  RunSteps("screenshots/ScriptProcessor.steps", ONX_OBJ_SCRIPT_PROCESSOR, "Script processor", Shoot);
}

TEST_CASE("Terminal") {
  RunSteps("screenshots/Terminal.steps", ONX_OBJ_TERMINAL, "Terminal", Shoot);
}

TEST_CASE("File Manager") {
  RunSteps("screenshots/FileManager.steps", ONX_OBJ_FILE_MANAGER, "File manager", Shoot);
}

TEST_CASE("a report of many errors") {
  FileManagerBench bench;
  bench.Drop(std::vector<std::string>(200, "C:\\bench\\a file that is not there.bin"));
  bench.device.Fail("TransmitFile", std::deque<std::int32_t>(200, 5));
  bench.Press(IDC_FM_COPY_ALL);
  Shoot(Window::WaitForTop("Error"), "filemanager-report");
  Window::WaitForTop("Error").PressControl(IDOK);
  bench.WaitUntilIdle();
}

TEST_CASE("Sample host at work") {
  CreateDirectoryA("C:\\bench", nullptr);
  std::ofstream("C:\\bench\\calibrate.dcs")
      << "messagebox(\"Calibration\", \"Connect the probe to the reference, then press OK.\");\n"
         "transmitstring(\"id\\r\"); delay(300); print(receivestring());\n"
         "transmitstring(\"dac 2 2000\\r\"); delay(100); print(receivestring());\n"
         "transmitfile(\"C:\\\\bench\\\\table.bin\", 1, 1, 0);\n"
         "print(\"Channel 2: 2000 mV, PASS\\n\"); delay(1500);\n";
  std::ofstream("C:\\bench\\table.bin") << std::string(700, 'x');
  const HostProgram host("--settings C:\\bench\\settings.ini");
  host.WaitForText(IDC_CHANNEL_STATE, "open");
  host.Main().Send(WM_COMMAND, IDM_TRACE);
  const Window trace = host.WaitForTop("Trace");
  host.DropFile("C:\\bench\\calibrate.dcs");
  const Window log = host.WaitForTop("Log");
  host.WaitForTop("Calibration");
  WaitFor("the holder", [&] { return host.Main().Control(IDC_USE_HOLDER).Text().starts_with("ondhost"); });
  Window::AnswerBox("Calibration", "Connect the probe to the reference, then press OK.", IDOK, host.Process());
  WaitFor("traffic", [&] { return !host.Main().Control(IDC_USE_TRAFFIC).Text().starts_with("0 "); });
  Shoot(host.Main(), "host-busy");
  host.WaitForRow(log, "calibrate.dcs: ");
  Shoot(log, "host-log");
  Shoot(trace, "host-trace");
  for (const Window& rows : {log, trace})
    rows.Resize(1, 1);
  Shoot(trace, "host-trace-smallest");
  trace.PressCloseBox();
  log.PressCloseBox();
  host.Main().Activate();
  host.Main().Send(WM_NULL);
  TypeKeyWith(VK_MENU, 'I');
  Sleep(500); // a menu tells nobody when it is drawn
  const RECT main = host.Main().Place();
  ShootPlace({main.left, main.top, main.right, main.bottom}, "host-menu");
  TypeKey(VK_ESCAPE);
  TypeKey(VK_ESCAPE);
  host.CloseMain();
  DeleteFileA("C:\\bench\\settings.ini");
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
