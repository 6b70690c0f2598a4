// The sample host as a process of its own, with its windows.
#pragma once

#include "tests/windows/support/WindowDriver.h"

#include <string>

// The program that is tested, beside the module; tests give it a name of its own (see CMakeLists.txt).
std::string TestedHostPath();

class HostProgram {
public:
  // Starts the program and waits for its main window.
  explicit HostProgram(const std::string& arguments = "", const std::string& path = TestedHostPath());
  // A program that a failed test left running is killed.
  ~HostProgram();
  HostProgram(const HostProgram&) = delete;
  HostProgram& operator=(const HostProgram&) = delete;

  Window Main() const { return m_main; }
  Window WaitForTop(const std::string& caption) const { return Window::WaitForTop(caption, m_process.dwProcessId); }
  void AnswerError(const std::string& text) const { Window::AnswerBox("Error", text, IDOK, m_process.dwProcessId); }

  // Waits until a control of the main window has that text.
  void WaitForText(int control, const std::string& text) const;
  // Waits for the program's end; its exit code.
  DWORD WaitForEnd();

private:
  PROCESS_INFORMATION m_process{};
  Window m_main;
};
