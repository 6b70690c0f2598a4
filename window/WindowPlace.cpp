#include "window/WindowPlace.h"

#include <algorithm>

namespace {

// The property of an owner whose next window is waited for.
constexpr const char* kExpected = "OndNextWindowOverOwner";

RECT PlaceOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

bool CanBeSeen(HWND window) {
  return window && IsWindowVisible(window) && !IsIconic(window);
}

// Where something that long begins to be in the middle from `from` to `to`, but within the limits.
int Centred(int length, int from, int to, int lowest, int highest) {
  return std::max(std::min((from + to - length) / 2, highest - length), lowest);
}

} // namespace

RECT WorkArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoA(MonitorFromWindow(window, window ? MONITOR_DEFAULTTONEAREST : MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

void CenterWindow(HWND window) {
  const HWND owner = GetWindow(window, GW_OWNER);
  const RECT screen = WorkArea(CanBeSeen(owner) ? owner : window);
  const RECT around = CanBeSeen(owner) ? PlaceOf(owner) : screen;
  const RECT own = PlaceOf(window);
  const int x = Centred(own.right - own.left, around.left, around.right, screen.left, screen.right);
  const int y = Centred(own.bottom - own.top, around.top, around.bottom, screen.top, screen.bottom);
  SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

NextWindowOverOwner::NextWindowOverOwner(HWND owner)
    : m_owner(owner), m_hook(owner ? SetWindowsHookExA(WH_CBT, OnEvent, nullptr, GetCurrentThreadId()) : nullptr) {
  if (m_hook)
    SetPropA(m_owner, kExpected, m_hook);
}

NextWindowOverOwner::~NextWindowOverOwner() {
  if (m_hook) {
    RemovePropA(m_owner, kExpected);
    UnhookWindowsHookEx(m_hook);
  }
}

// A window has its size when it is first activated, and cannot be seen yet.
LRESULT CALLBACK NextWindowOverOwner::OnEvent(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_ACTIVATE) {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (RemovePropA(GetWindow(window, GW_OWNER), kExpected))
      CenterWindow(window);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}
