// Message boxes of the host's windows.
#pragma once

#include <string>
#include <windows.h>

namespace host {

// The caption of the main window and of its boxes.
inline constexpr const char* kHostTitle = "Device host";

// Shows a box and returns when the user has answered. Messages are served meanwhile: the windows may have been closed
// when it returns.
inline void ShowError(HWND owner, const std::string& text) {
  MessageBoxA(owner, text.c_str(), kHostTitle, MB_OK | MB_ICONEXCLAMATION);
}

inline void ShowNote(HWND owner, const std::string& text) {
  MessageBoxA(owner, text.c_str(), kHostTitle, MB_OK | MB_ICONINFORMATION);
}

} // namespace host
