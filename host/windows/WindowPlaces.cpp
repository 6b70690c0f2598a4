#include "host/windows/WindowPlaces.h"

#include <algorithm>

namespace host {
namespace {

// The part of the screen with the window that taskbars leave free.
RECT WorkArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

RECT PlaceOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

void Move(HWND window, int x, int y) {
  SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// As far as titles must be apart to be seen both.
int Step() {
  return GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CYSIZEFRAME);
}

struct Search {
  HWND owner;
  std::vector<HWND> found;
};

BOOL CALLBACK AddIfOwned(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (GetWindow(window, GW_OWNER) != search.owner)
    return TRUE;
  try {
    search.found.push_back(window);
  } catch (...) { // not through the system's frames
    return FALSE;
  }
  return TRUE;
}

} // namespace

void PlaceMainWindow(HWND window) {
  const RECT screen = WorkArea(window);
  Move(window, screen.left + Step(), screen.top + Step());
}

std::vector<HWND> OwnedWindows(HWND owner) {
  Search search{owner, {}};
  EnumThreadWindows(GetCurrentThreadId(), AddIfOwned, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void PlaceBeside(HWND mainWindow, HWND window, std::size_t index) {
  const RECT screen = WorkArea(mainWindow);
  const RECT main = PlaceOf(mainWindow);
  const RECT own = PlaceOf(window);
  const int offset = static_cast<int>(index) * Step();
  // As far to the right and down as the screen allows.
  const int farthestX = screen.right - (own.right - own.left);
  const int farthestY = screen.bottom - (own.bottom - own.top);
  const bool below = main.right + offset > farthestX && main.bottom + offset <= farthestY;
  const int x = std::min<int>((below ? main.left : main.right) + offset, farthestX);
  const int y = std::min<int>((below ? main.bottom : main.top) + offset, farthestY);
  Move(window, std::max<int>(x, screen.left), std::max<int>(y, screen.top));
}

} // namespace host
