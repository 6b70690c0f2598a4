// Where windows stand on the screen.
#pragma once

#include <windows.h>

// What taskbars leave free of the screen with most of the window; of the first screen for no window.
RECT WorkArea(HWND window);

// Moves a window over the middle of its owner, or of the work area when it has none that can be seen. It stays within
// the work area, its upper left corner at least.
void CenterWindow(HWND window);

// For windows that the system makes: the next one of that owner's on this thread comes up over its middle. Nothing for
// no owner.
class NextWindowOverOwner {
public:
  explicit NextWindowOverOwner(HWND owner);
  NextWindowOverOwner(const NextWindowOverOwner&) = delete;
  NextWindowOverOwner& operator=(const NextWindowOverOwner&) = delete;
  ~NextWindowOverOwner();

private:
  static LRESULT CALLBACK OnEvent(int code, WPARAM wParam, LPARAM lParam);

  HWND m_owner;
  HHOOK m_hook;
};
