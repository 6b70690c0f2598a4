// A session of `term`.
#pragma once

#include "host/lineedit/LineEditor.h"
#include "host/support/Interrupt.h"
#include "host/talk/AnswerView.h"
#include "host/talk/DeviceLine.h"
#include "host/talk/TermCommand.h"
#include "host/talk/TermLog.h"

#include <chrono>
#include <optional>
#include <span>

namespace host {

class TermSession {
public:
  // All must outlive this.
  TermSession(std::string_view program, const TermArguments& arguments, const Unescape& unescape, TermLog& log);

  // Returns the process's exit code.
  int Run();

private:
  using Clock = std::chrono::steady_clock;

  // A line beginning with a tilde: "~NAME ARGUMENT". TermActions.cpp has the table and what they do.
  struct Action;
  static std::span<const Action> Actions();
  void RunAction(const std::string& text);
  void ShowHelp(const std::string& argument);
  void Quit(const std::string& argument);
  void SendPart(const std::string& argument);
  void SendFile(const std::string& argument);
  void ToggleHex(const std::string& argument);
  void ToggleStamps(const std::string& argument);
  void SetLineEnd(const std::string& argument);
  void Clear(const std::string& argument);
  void ShowState(const std::string& argument);
  void Reconnect(const std::string& argument);

  void Greet();
  int ReadLines();
  void TakeLine(const std::string& text);
  void SendTyped(const std::string& text, const std::string& end);
  bool SendBytes(std::string_view bytes);
  // Shows what the device has said; true when there was something.
  bool Poll();
  // What is wrong with the line, which may be lost and opened again by itself; asked for once in a while.
  void LookAtLine();
  void NoteProblem(std::int32_t code);
  // Until the device is silent.
  void ShowLastAnswers();
  // What comes next is not the device's.
  void BreakView();
  void RenewView();
  void Print(const std::string& text);
  void Remark(const std::string& text);
  // Ends the session, with this exit code.
  void End(int code);

  const std::string_view m_program;
  const TermArguments& m_arguments;
  const Unescape& m_unescape;
  TermLog& m_log;
  DeviceLine m_line;
  LineEditor m_editor;
  ViewMode m_plainMode; // when it is not hexadecimal
  bool m_hex;
  bool m_stamps;
  std::string m_lineEnd;
  std::optional<AnswerView> m_view;
  Clock::time_point m_lastReceived{};
  Clock::time_point m_lastLook{};
  std::int32_t m_problem = 0; // why nothing comes from the device; 0: it may
  bool m_lost = false;        // for good
  std::optional<int> m_code;  // the session ends with it
};

} // namespace host
