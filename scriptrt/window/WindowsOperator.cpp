#include "scriptrt/window/WindowsOperator.h"

#include "scriptrt/window/CUserInputDialog.h"
#include "scriptrt/window/CUserListInputDlg.h"
#include "window/MessageBoxes.h"

void CWindowsOperator::ShowMessage(const std::string& caption, const std::string& text) {
  if (!m_dismissed)
    ShowMessageBox(nullptr, text, caption, MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND);
}

std::optional<std::uint64_t> CWindowsOperator::AskNumber(const NumberQuestion& question) {
  CUserInputDialog dialog(question);
  return !m_dismissed && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetNumber()) : std::nullopt;
}

std::optional<std::string> CWindowsOperator::AskText(const std::string& caption, const std::string& prompt,
                                                     const std::string& initial) {
  CUserInputDialog dialog(caption, prompt, initial);
  return !m_dismissed && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetText()) : std::nullopt;
}

std::optional<std::size_t> CWindowsOperator::AskItem(const std::string& caption, const std::string& prompt,
                                                     const std::vector<std::string>& items, std::uint64_t initial) {
  CUserListInputDlg dialog(caption, prompt, items, initial);
  return !m_dismissed && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetSelected()) : std::nullopt;
}

// All windows of a script's thread are questions, or the message boxes of questions.
void CWindowsOperator::Dismiss(DWORD scriptThread) {
  m_dismissed = true;
  EnumThreadWindows(
      scriptThread,
      [](HWND window, LPARAM) -> BOOL {
        if (IsWindowVisible(window))
          PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
        return TRUE;
      },
      0);
}
