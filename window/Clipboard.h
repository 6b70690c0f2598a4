// Text for other programs.
#pragma once

#include <string>
#include <windows.h>

// Hands a text to the clipboard. Failures are silent.
void PutOnClipboard(HWND owner, const std::string& text);
