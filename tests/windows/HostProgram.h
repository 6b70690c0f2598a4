// The sample host as a process of its own, with its windows.
#pragma once

#include "tests/windows/support/WindowDriver.h"

#include <string>

// The program that is tested, beside the module.
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

  void ChooseFile(const std::string& caption, const std::string& path) const {
    Window::ChooseFile(caption, path, m_process.dwProcessId);
  }

  // Waits until a control of the main window has that text.
  void WaitForText(int control, const std::string& text) const;
  // Checks that the program ends, without an error.
  void WaitForEnd() const;
  // The same by the main window's close box.
  void CloseMain() const;

private:
  PROCESS_INFORMATION m_process{};
  Window m_main;
};
