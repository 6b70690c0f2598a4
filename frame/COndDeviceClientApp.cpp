#include "frame/COndDeviceClientApp.h"

#include "util/LastSeparator.h"

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
  if (const std::size_t separator = LastSeparator(folder); separator != std::string::npos)
    folder.resize(separator);
  return folder.empty() ? folder : folder + '\\';
}

// Enter presses the button that has the focus. Tab makes it the dialog's default button on its way, a click does not.
void MakeFocusedButtonDefault(HWND dialog, const MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_RETURN || !IsChild(dialog, message.hwnd))
    return;
  const LRESULT code = SendMessageW(message.hwnd, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&message));
  if (code & DLGC_UNDEFPUSHBUTTON)
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(message.hwnd), TRUE);
}

} // namespace

COndDeviceClientApp::COndDeviceClientApp()
    : m_hostFolder(HostFolder()),
      m_hook(SetWindowsHookExW(WH_GETMESSAGE, GetMessageHook, nullptr, GetCurrentThreadId())) {}

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

// The hook and IsDialogMessage are the wide ones because characters arrive as UTF-16 here, whatever the host's loop
// asks for; a narrow control still gets its code page's bytes.
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
    if (!IsWindow(dialog))
      continue;
    MakeFocusedButtonDefault(dialog, message);
    if (IsDialogMessageW(dialog, &message))
      return true;
  }
  return false;
}
