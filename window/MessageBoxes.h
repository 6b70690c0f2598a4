// Message boxes for texts of any length.
#pragma once

#include <string>
#include <windows.h>

// The system's box where that fits the screen. A text with a single button that is too long for it gets a window with
// the same caption, sign and button, in which it scrolls. Flags and answers are the system's (MB_…, ID…); 0 when
// nothing can be shown. Pumps messages. [any thread]
int ShowMessageBox(HWND owner, const std::string& text, const std::string& caption, UINT type);
