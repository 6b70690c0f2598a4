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

} // namespace host
