// Message boxes of the host's windows.
#pragma once

#include "window/MessageBoxes.h"

namespace host {

// Shows a box and returns when the user has answered. Messages are served meanwhile: the windows may have been closed
// when it returns.
inline void ShowError(HWND owner, const std::string& text) {
  ShowMessageBox(owner, text, "Error", MB_OK | MB_ICONEXCLAMATION);
}

inline void ShowChannelError(HWND owner, const std::string& reason) {
  ShowError(owner, "The channel cannot be opened: " + reason + ".");
}

inline void ShowNote(HWND owner, const std::string& caption, const std::string& text) {
  ShowMessageBox(owner, text, caption, MB_OK | MB_ICONINFORMATION);
}

} // namespace host
