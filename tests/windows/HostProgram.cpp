#include "tests/windows/HostProgram.h"

#include <doctest/doctest.h>

namespace {

constexpr DWORD kEndLimitMs = 20000;

} // namespace

std::string TestedHostPath() {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  const std::string own = path;
  return own.substr(0, own.rfind('\\') + 1) + "ondhost.exe";
}

HostProgram::HostProgram(const std::string& arguments, const std::string& path) {
  STARTUPINFOA start{};
  start.cb = sizeof start;
  std::string command = "\"" + path + "\" " + arguments;
  const BOOL started =
      CreateProcessA(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &m_process);
  REQUIRE_MESSAGE(started, path << " starts");
  m_main = WaitForTop("Device host");
}

HostProgram::~HostProgram() {
  if (WaitForSingleObject(m_process.hProcess, 0) != WAIT_OBJECT_0)
    TerminateProcess(m_process.hProcess, 1);
  CloseHandle(m_process.hThread);
  CloseHandle(m_process.hProcess);
}

void HostProgram::WaitForText(int control, const std::string& text) const {
  WaitFor("the text \"" + text + "\"", [&] { return m_main.Control(control).Text() == text; });
}

void HostProgram::WaitForEnd() const {
  if (WaitForSingleObject(m_process.hProcess, kEndLimitMs) != WAIT_OBJECT_0)
    FAIL("the program did not end within " << kEndLimitMs << " ms");
  DWORD code = 99;
  GetExitCodeProcess(m_process.hProcess, &code);
  CHECK(code == 0);
}

void HostProgram::CloseMain() const {
  m_main.PressCloseBox();
  WaitForEnd();
}
