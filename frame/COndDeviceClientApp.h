// The application object: keyboard navigation for the module's windows in a host loop that knows nothing of them, and
// the host program's folder.
#pragma once

#include "window/CWinApp.h"
#include "window/Handles.h"

#include <string>
#include <vector>

// [the thread that loads the module: the host's user-interface thread]
class COndDeviceClientApp : public CWinApp {
public:
  // Installs the message hook on the calling thread. A hook that cannot be installed is not reported: the windows
  // then lack keyboard navigation and nothing else.
  COndDeviceClientApp();

  static COndDeviceClientApp& Get();

  // Gives a window's keyboard messages to the system's dialog processing. A window already listed stays where it is.
  void RegisterDialog(HWND dialog);
  // Whether it was listed.
  bool UnregisterDialog(HWND dialog);

  // Folder of the host program with a backslash at the end, or empty.
  const std::string& GetHostFolder() const { return m_hostFolder; }

private:
  static LRESULT CALLBACK GetMessageHook(int code, WPARAM wParam, LPARAM lParam);
  bool TakeDialogMessage(MSG& message) const;

  std::vector<HWND> m_dialogs; // in the order of registration
  std::string m_hostFolder;
  CHookHandle m_hook;
};
