#include "frame/COndDeviceClientApp.h"

#include <algorithm>

namespace {

// Lives from the module's load to its unload.
COndDeviceClientApp g_app;

// Room for the host's path; a longer one is cut off by the system.
constexpr DWORD kPathSize = 262;

std::string HostFolder() {
  char path[kPathSize] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, kPathSize);
  std::string folder(path, std::min(length, kPathSize - 1));
  if (const std::size_t separator = folder.rfind('\\'); separator != std::string::npos)
    folder.resize(separator);
  return folder.empty() ? folder : folder + '\\';
}

} // namespace

COndDeviceClientApp::COndDeviceClientApp()
    : m_hostFolder(HostFolder()),
      m_hook(SetWindowsHookExA(WH_GETMESSAGE, GetMessageHook, nullptr, GetCurrentThreadId())) {}

COndDeviceClientApp::~COndDeviceClientApp() {
  if (m_hook)
    UnhookWindowsHookEx(m_hook);
}

COndDeviceClientApp& COndDeviceClientApp::Get() {
  return g_app;
}

void COndDeviceClientApp::RegisterDialog(HWND dialog) {
  if (std::find(m_dialogs.begin(), m_dialogs.end(), dialog) == m_dialogs.end())
    m_dialogs.push_back(dialog);
}

bool COndDeviceClientApp::UnregisterDialog(HWND dialog) {
  const auto found = std::find(m_dialogs.begin(), m_dialogs.end(), dialog);
  if (found == m_dialogs.end())
    return false;
  m_dialogs.erase(found);
  return true;
}

LRESULT CALLBACK COndDeviceClientApp::GetMessageHook(int code, WPARAM wParam, LPARAM lParam) {
  MSG& message = *reinterpret_cast<MSG*>(lParam);
  const bool taken =
      code >= 0 && wParam == PM_REMOVE && message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (taken && g_app.TakeDialogMessage(message)) {
    message.message = WM_NULL;
    message.wParam = 0;
    message.lParam = 0;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Asks the dialogs in turn. What a dialog does with the message may open and close windows, so the list is looked at by
// position anew for each one.
bool COndDeviceClientApp::TakeDialogMessage(MSG& message) const {
  for (std::size_t i = 0; i < m_dialogs.size(); ++i) {
    const HWND dialog = m_dialogs[i];
    if (IsWindow(dialog) && IsDialogMessageA(dialog, &message))
      return true;
  }
  return false;
}
