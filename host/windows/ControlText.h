// The text of a window or control, whatever its length.
#pragma once

#include <string>
#include <windows.h>

namespace host {

inline std::string ControlText(HWND control) {
  std::string text(static_cast<std::size_t>(GetWindowTextLengthA(control)), '\0');
  text.resize(static_cast<std::size_t>(GetWindowTextA(control, text.data(), static_cast<int>(text.size() + 1))));
  return text;
}

// Leaves a text that is right alone, so that it does not flicker and what the user has selected in it stays.
inline void SetControlText(HWND dialog, int control, const std::string& text) {
  const HWND window = GetDlgItem(dialog, control);
  if (ControlText(window) != text)
    SetWindowTextA(window, text.c_str());
}

} // namespace host
