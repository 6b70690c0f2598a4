// The operator behind windows: message boxes and modal dialogs without an owner, on the thread that runs the script.
#pragma once

#include "scriptrt/question/Operator.h"

#include <windows.h>

#include <atomic>

class CWindowsOperator : public CONXOperator {
public:
  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;

  // Answers what is open on the script's thread with Cancel, and everything asked later without showing it. A question
  // that is just opening may be missed: call again until the script has ended. [not the script's thread]
  void Dismiss(DWORD scriptThread);
  // Questions are shown again. [before a run]
  void Admit() { m_dismissed = false; }

private:
  std::atomic<bool> m_dismissed = false;
};
