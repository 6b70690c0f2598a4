#include "scriptrt/window/WindowsOperator.h"

#include "scriptrt/window/CUserInputDialog.h"
#include "scriptrt/window/CUserListInputDlg.h"
#include "window/Handles.h"
#include "window/MessageBoxes.h"

#include <string_view>
#include <utility>

namespace {

void Cancel(HWND window) {
  PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
}

bool IsDialog(HWND window) {
  char name[16] = "";
  GetClassNameA(window, name, sizeof(name));
  return std::string_view(name) == "#32770"; // the system's class of dialogs and message boxes
}

} // namespace

// While one question is asked. Its window is the first dialog that the thread makes; nobody hands out a message box's
// otherwise.
class CWindowsOperator::CAsking {
public:
  explicit CAsking(CWindowsOperator& asked)
      : m_operator(asked), m_outer(std::exchange(t_innermost, this)),
        m_hook(SetWindowsHookExA(WH_CBT, OnWindowEvent, nullptr, GetCurrentThreadId())) {}
  CAsking(const CAsking&) = delete;
  CAsking& operator=(const CAsking&) = delete;
  ~CAsking() {
    t_innermost = m_outer;
    m_operator.m_question = nullptr;
  }

  // Nobody has dismissed it before it is shown.
  explicit operator bool() const { return !m_operator.m_dismissed; }

private:
  static LRESULT CALLBACK OnWindowEvent(int code, WPARAM wParam, LPARAM lParam) {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && t_innermost && !t_innermost->m_operator.m_question && IsDialog(window))
      t_innermost->m_operator.m_question = window;
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  // The thread's; questions of several objects may be open on one thread, each above the other.
  static thread_local CAsking* t_innermost;

  CWindowsOperator& m_operator;
  CAsking* const m_outer;
  const CHookHandle m_hook;
};

thread_local CWindowsOperator::CAsking* CWindowsOperator::CAsking::t_innermost = nullptr;

void CWindowsOperator::ShowMessage(const std::string& caption, const std::string& text) {
  const CAsking asking(*this);
  if (asking)
    ShowMessageBox(nullptr, text, caption, MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND);
}

std::optional<std::uint64_t> CWindowsOperator::AskNumber(const NumberQuestion& question) {
  const CAsking asking(*this);
  CUserInputDialog dialog(question);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetNumber()) : std::nullopt;
}

std::optional<std::string> CWindowsOperator::AskText(const std::string& caption, const std::string& prompt,
                                                     const std::string& initial) {
  const CAsking asking(*this);
  CUserInputDialog dialog(caption, prompt, initial);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetText()) : std::nullopt;
}

std::optional<std::size_t> CWindowsOperator::AskItem(const std::string& caption, const std::string& prompt,
                                                     const std::vector<std::string>& items, std::uint64_t initial) {
  const CAsking asking(*this);
  CUserListInputDlg dialog(caption, prompt, items, initial);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetSelected()) : std::nullopt;
}

void CWindowsOperator::Dismiss() {
  m_dismissed = true;
  const HWND question = m_question;
  if (!question)
    return;
  // First a box in front of it, such as the refusal of an entry.
  EnumThreadWindows(
      GetWindowThreadProcessId(question, nullptr),
      [](HWND window, LPARAM owner) -> BOOL {
        if (GetWindow(window, GW_OWNER) == reinterpret_cast<HWND>(owner))
          Cancel(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(question));
  Cancel(question);
}
