// The window that shows what goes over the channel.
#pragma once

#include "host/windows/TraceLog.h"

#include <windows.h>

#include <commctrl.h>

namespace host {

// A list that asks for the rows it shows, ten times a second at most: so it stays quick, whatever comes.
// [user-interface thread]
class TraceWindow {
public:
  explicit TraceWindow(TraceLog& log) : m_log(log) {}
  ~TraceWindow() { End(); }
  TraceWindow(const TraceWindow&) = delete;
  TraceWindow& operator=(const TraceWindow&) = delete;

  // Shows the window beside `owner`, or hides it.
  void Toggle(HWND owner);
  bool IsShown() const { return m_window && IsWindowVisible(m_window); }
  // True when the message was a key for this window.
  bool TakeKey(MSG& message) const { return m_window && IsDialogMessageA(m_window, &message) != FALSE; }
  // Safe at any time, and again.
  void End();

private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnInit();
  void Layout() const;
  void Refresh();
  void GiveText(LVITEMA& item);
  HWND List() const;

  TraceLog& m_log;
  HWND m_window = nullptr;
  SIZE m_margin{};           // of the list, to the window's right and lower edge
  std::uint64_t m_shown = 0; // changes of the log that the list shows
  std::string m_text;        // that the list was given last
};

} // namespace host
