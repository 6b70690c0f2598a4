// The sample host as a process of its own, with its windows.
#pragma once

#include "host/windows/resource.h"
#include "tests/windows/support/WindowDriver.h"

#include <doctest/doctest.h>
#include <shlobj.h>

// The program that is tested, beside the module.
inline std::string TestedHostPath() {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  const std::string own = path;
  return own.substr(0, own.rfind('\\') + 1) + "ondhost.exe";
}

class HostProgram {
public:
  // Starts the program and waits for its main window. It remembers nothing unless the arguments name its settings.
  explicit HostProgram(const std::string& arguments = "", const std::string& path = TestedHostPath()) {
    STARTUPINFOA start{};
    start.cb = sizeof start;
    const bool remembers = arguments.find("--settings") != std::string::npos;
    std::string command = "\"" + path + "\" " + arguments + (remembers ? "" : " --settings none");
    const BOOL started =
        CreateProcessA(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &m_process);
    REQUIRE_MESSAGE(started, path << " starts");
    m_main = WaitForTop("Device host");
  }
  // A program that a failed test left running is killed.
  ~HostProgram() {
    if (WaitForSingleObject(m_process.hProcess, 0) != WAIT_OBJECT_0)
      TerminateProcess(m_process.hProcess, 1);
    CloseHandle(m_process.hThread);
    CloseHandle(m_process.hProcess);
  }
  HostProgram(const HostProgram&) = delete;
  HostProgram& operator=(const HostProgram&) = delete;

  Window Main() const { return m_main; }
  DWORD Process() const { return m_process.dwProcessId; }
  Window WaitForTop(const std::string& caption) const { return Window::WaitForTop(caption, m_process.dwProcessId); }
  void AnswerError(const std::string& text) const { Window::AnswerBox("Error", text, IDOK, m_process.dwProcessId); }

  // An error that begins so, and confirms it.
  void AnswerErrorLike(const std::string& beginning) const {
    const Window box = WaitForTop("Error");
    CHECK(box.BoxText().starts_with(beginning));
    box.PressControl(IDOK);
    box.WaitUntilGone("the box");
  }

  void ChooseFile(const std::string& caption, const std::string& path) const {
    Window::ChooseFile(caption, path, m_process.dwProcessId);
  }

  // Waits until a control of the main window has that text.
  void WaitForText(int control, const std::string& text) const {
    WaitFor("the text \"" + text + "\"", [&] { return m_main.Control(control).Text() == text; });
  }
  // Drops a file on the main window, as the system does, which puts its name into that program's memory.
  void DropFile(const std::string& path) const {
    const DROPFILES drop{.pFiles = sizeof drop, .pt = {}, .fNC = FALSE, .fWide = FALSE};
    std::string bytes(reinterpret_cast<const char*>(&drop), sizeof drop);
    bytes += path + '\0' + '\0';
    void* const memory = VirtualAllocEx(m_process.hProcess, nullptr, bytes.size(), MEM_COMMIT, PAGE_READWRITE);
    REQUIRE(WriteProcessMemory(m_process.hProcess, memory, bytes.data(), bytes.size(), nullptr));
    PostMessageA(m_main.Handle(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
  }
  // What the window "Trace" or "Log" copies: its selected rows, or all.
  std::string RowsOf(const Window& rows) const {
    rows.Send(WM_COMMAND, IDC_ROWS_COPY);
    return ClipboardBytes();
  }
  // Waits for a text among the rows.
  std::string WaitForRow(const Window& rows, const std::string& text) const {
    std::string all;
    WaitFor("the row \"" + text + "\"", [&] { return (all = RowsOf(rows)).find(text) != std::string::npos; });
    return all;
  }
  // Checks that the program ends, without an error.
  void WaitForEnd() const {
    if (WaitForSingleObject(m_process.hProcess, kEndLimitMs) != WAIT_OBJECT_0)
      FAIL("the program did not end within " << kEndLimitMs << " ms");
    DWORD code = 99;
    GetExitCodeProcess(m_process.hProcess, &code);
    CHECK(code == 0);
  }
  // The same by the main window's close box.
  void CloseMain() const {
    m_main.PressCloseBox();
    WaitForEnd();
  }

private:
  static constexpr DWORD kEndLimitMs = 20000;

  PROCESS_INFORMATION m_process{};
  Window m_main;
};
