#include "scriptrt/window/WindowsPrompter.h"

#include "scriptrt/window/CUserInputDialog.h"
#include "scriptrt/window/CUserListInputDlg.h"
#include "window/Handles.h"
#include "window/MessageBoxes.h"

#include <mutex>
#include <string_view>
#include <utility>

namespace {

// An open menu, or a window that is being moved, has a loop of its own, which passes the command on and does not end.
void Cancel(HWND window) {
  PostMessageA(window, WM_CANCELMODE, 0, 0);
  GUITHREADINFO thread{};
  thread.cbSize = sizeof(thread);
  if (GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread) && (thread.flags & GUI_INMOVESIZE) != 0)
    PostMessageA(window, WM_KEYDOWN, VK_ESCAPE, 0);
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
class CWindowsPrompter::CAsking {
public:
  explicit CAsking(CWindowsPrompter& asked)
      : m_prompter(asked), m_hook(SetWindowsHookExA(WH_CBT, OnWindowEvent, nullptr, m_thread)) {
    const std::lock_guard guard(g_mutex);
    m_next = std::exchange(g_first, this);
  }
  CAsking(const CAsking&) = delete;
  CAsking& operator=(const CAsking&) = delete;
  ~CAsking() {
    m_prompter.m_question = nullptr;
    const std::lock_guard guard(g_mutex);
    CAsking** place = &g_first;
    while (*place != this)
      place = &(*place)->m_next;
    *place = m_next;
  }

  // Nobody has dismissed it before it is shown.
  explicit operator bool() const { return !m_prompter.m_dismissed; }

private:
  static LRESULT CALLBACK OnWindowEvent(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && IsDialog(reinterpret_cast<HWND>(wParam)))
      Found(reinterpret_cast<HWND>(wParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }
  // Questions of several objects may be open on one thread, each above the other; the last one comes first.
  static void Found(HWND window) {
    const std::lock_guard guard(g_mutex);
    CAsking* asking = g_first;
    while (asking && asking->m_thread != GetCurrentThreadId())
      asking = asking->m_next;
    HWND none = nullptr;
    if (asking)
      asking->m_prompter.m_question.compare_exchange_strong(none, window);
  }

  // All that are open, on any thread.
  static std::mutex g_mutex;
  static CAsking* g_first; // under the mutex

  CWindowsPrompter& m_prompter;
  const DWORD m_thread = GetCurrentThreadId();
  CAsking* m_next = nullptr; // under the mutex
  const CHookHandle m_hook;
};

std::mutex CWindowsPrompter::CAsking::g_mutex;
CWindowsPrompter::CAsking* CWindowsPrompter::CAsking::g_first = nullptr;

void CWindowsPrompter::ShowMessage(const std::string& caption, const std::string& text) {
  const CAsking asking(*this);
  if (asking)
    ShowMessageBox(nullptr, text, caption, MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND);
}

std::optional<std::uint64_t> CWindowsPrompter::AskNumber(const NumberQuestion& question) {
  const CAsking asking(*this);
  CUserInputDialog dialog(question);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetNumber()) : std::nullopt;
}

std::optional<std::string> CWindowsPrompter::AskText(const std::string& caption, const std::string& prompt,
                                                     const std::string& initial) {
  const CAsking asking(*this);
  CUserInputDialog dialog(caption, prompt, initial);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetText()) : std::nullopt;
}

std::optional<std::size_t> CWindowsPrompter::AskItem(const std::string& caption, const std::string& prompt,
                                                     const std::vector<std::string>& items, std::uint64_t initial) {
  const CAsking asking(*this);
  CUserListInputDlg dialog(caption, prompt, items, initial);
  return asking && dialog.DoModal(nullptr) == IDOK ? std::optional(dialog.GetSelected()) : std::nullopt;
}

void CWindowsPrompter::Dismiss() {
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
