// Answers the questions that the module shows in windows, at the host's desk: as a person would, who types into the
// field, chooses in the list and presses OK. So it is the window that checks the answer.
#pragma once

#include "host/answers/AnswerDesk.h"
#include "host/console/QuestionControls.h"

#include <atomic>
#include <memory>
#include <optional>

namespace host {

// One object at a time. Runs that ask, and everything here, belong to one thread.
class QuestionWindows {
public:
  QuestionWindows() = default;
  ~QuestionWindows();
  QuestionWindows(const QuestionWindows&) = delete;
  QuestionWindows& operator=(const QuestionWindows&) = delete;

  // From now on every dialog of this thread is a question, answered or noted at the desk; null: no longer.
  void UseDesk(AnswerDesk* desk);
  // Closes the question that is open as by Cancel. [any thread]
  void Dismiss();

private:
  struct Unhook {
    void operator()(HHOOK hook) const { UnhookWindowsHookEx(hook); }
  };

  // After the window's own procedure has seen the message.
  static LRESULT CALLBACK OnMessageDone(int code, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK OnWindowEvent(int code, WPARAM wParam, LPARAM lParam);
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD);
  void OnDialogBegun(const char* caption);
  void OnDialogFilled(HWND dialog);
  void OnPressed(WORD button);
  void OnDestroyed();
  // When the dialog that is in front serves messages, before anything further happens to it.
  void AnswerSoon();
  void Answer();
  void Enter(const FileAnswer& answer);
  void Refuse(const FileAnswer& answer, const std::string& complaint);

  std::unique_ptr<std::remove_pointer_t<HHOOK>, Unhook> m_hook;
  std::unique_ptr<std::remove_pointer_t<HHOOK>, Unhook> m_creationHook;
  AnswerDesk* m_desk = nullptr;
  std::optional<QuestionControls> m_question; // that is open
  std::atomic<HWND> m_window = nullptr;       // its window
  const FileAnswer* m_answer = nullptr;       // the file's to it
  std::optional<std::string> m_pressed;       // the answer when OK was pressed last
  HWND m_complaint = nullptr;                 // a box in front of the question
  std::string m_refusal; // what is wrong with the answer when the question is still open afterwards
  UINT_PTR m_timer = 0;
};

} // namespace host
