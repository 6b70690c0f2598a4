#include "host/windows/WindowPlaces.h"

#include <algorithm>
#include <cstdlib>

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

using Corners = std::vector<POINT>;

// The upper left ones of the main window and of those of its windows that can be seen, but for one.
Corners CornersBeside(HWND mainWindow, HWND except) {
  std::vector<HWND> windows = OwnedWindows(mainWindow);
  windows.push_back(mainWindow);
  Corners corners;
  for (const HWND window : windows) {
    if (window != except && IsWindowVisible(window))
      corners.push_back({PlaceOf(window).left, PlaceOf(window).top});
  }
  return corners;
}

// The first place from `start` on whose title would not cover another one, in steps downwards and `aside`.
POINT FreePlace(POINT start, int aside, const Corners& taken) {
  const auto isTaken = [&](const POINT& place) {
    return std::any_of(taken.begin(), taken.end(), [&](const POINT& other) {
      return std::abs(other.x - place.x) < Step() && std::abs(other.y - place.y) < Step();
    });
  };
  while (isTaken(start))
    start = {start.x + aside, start.y + Step()};
  return start;
}

// Whether so much of a window's title lies in some screen's work area that it can be taken hold of.
bool CanBeTakenHold(const Place& place) {
  const RECT title{place.left, place.top, place.left + place.width, place.top + GetSystemMetrics(SM_CYCAPTION)};
  const HMONITOR screen = MonitorFromRect(&title, MONITOR_DEFAULTTONULL);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  RECT seen{};
  return screen && GetMonitorInfoA(screen, &monitor) && IntersectRect(&seen, &title, &monitor.rcWork) &&
         seen.right - seen.left >= 2 * Step() && seen.bottom - seen.top >= (title.bottom - title.top) / 2;
}

// Of a minimised window, where it goes back to; that is told in coordinates of the work area.
RECT NormalPlaceOf(HWND window) {
  if (!IsIconic(window))
    return PlaceOf(window);
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  GetWindowPlacement(window, &placement);
  RECT place = placement.rcNormalPosition;
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &monitor);
  OffsetRect(&place, monitor.rcWork.left - monitor.rcMonitor.left, monitor.rcWork.top - monitor.rcMonitor.top);
  return place;
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

void PlaceBeside(HWND mainWindow, HWND window) {
  const RECT screen = WorkArea(mainWindow);
  const RECT main = PlaceOf(mainWindow);
  const RECT own = PlaceOf(window);
  const Corners taken = CornersBeside(mainWindow, window);
  const POINT farthest{screen.right - (own.right - own.left), screen.bottom - (own.bottom - own.top)};
  for (const POINT start : {POINT{main.right, main.top}, POINT{main.left, main.bottom}}) {
    const POINT place = FreePlace(start, Step(), taken);
    if (place.x <= farthest.x && place.y <= farthest.y) {
      Move(window, place.x, place.y);
      return;
    }
  }
  // A title at least that can be seen, whatever is larger than the screen.
  const POINT place = FreePlace({std::max(farthest.x, screen.left), screen.top}, -Step(), taken);
  Move(window, std::max(place.x, screen.left), place.y);
}

bool PutBack(const Settings& settings, const std::string& name, HWND window) {
  const auto known = settings.windows.find(name);
  if (known == settings.windows.end() || !CanBeTakenHold(known->second))
    return false;
  const Place& place = known->second;
  SetWindowPos(window, nullptr, place.left, place.top, place.width, place.height, SWP_NOZORDER | SWP_NOACTIVATE);
  return true;
}

void RememberPlace(Settings& settings, const std::string& name, HWND window) {
  if (!IsWindow(window))
    return;
  const RECT place = NormalPlaceOf(window);
  settings.windows[name] = {place.left, place.top, place.right - place.left, place.bottom - place.top};
}

} // namespace host
