// Asks through windows: message boxes and modal dialogs without an owner, on the thread that runs the script.
#pragma once

#include "scriptrt/question/Prompter.h"

#include <windows.h>

#include <atomic>

// One question at a time, as one script asks them.
class CWindowsPrompter : public Prompter {
public:
  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;

  // Answers the open question with Cancel, and everything asked later without showing it. The answer arrives when the
  // question's thread next serves messages. One that is just opening on another thread may be missed: call again until
  // the script has ended. [any thread]
  void Dismiss();
  // Questions are shown again. [before a run]
  void Admit() { m_dismissed = false; }

private:
  class CAsking;

  std::atomic<bool> m_dismissed = false;
  std::atomic<HWND> m_question = nullptr; // the open question's window
};
