// A window with a list of rows that keep coming.
#pragma once

#include "host/windows/RowSource.h"

#include <windows.h>

#include <commctrl.h>

namespace host {

// A list that asks for the rows it shows, ten times a second at most: so it stays quick, whatever comes. Rows can be
// chosen by a filter, stopped, and copied. [user-interface thread]
class RowsWindow {
public:
  // The caption is the window's name too, where it is remembered.
  RowsWindow(const char* caption, RowSource& rows) : m_caption(caption), m_rows(rows) {}
  ~RowsWindow() { End(); }
  RowsWindow(const RowsWindow&) = delete;
  RowsWindow& operator=(const RowsWindow&) = delete;

  // Makes the window if need be, with `owner` as its own, and shows it; it does not take the keyboard away from another
  // one. True when it has been made now, and wants a place.
  bool Show(HWND owner);
  void Hide() { ShowWindow(m_window, SW_HIDE); }
  bool IsShown() const { return m_window && IsWindowVisible(m_window); }
  const char* Name() const { return m_caption; }
  HWND Handle() const { return m_window; }
  // True when the message was a key for this window.
  bool TakeKey(MSG& message);
  // Safe at any time, and again.
  void End();

private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  bool OnCommand(UINT command, UINT notification);
  void OnInit();
  void AddColumns();
  void Layout();
  // Takes in what has changed.
  void Refresh();
  // Begins anew, with all rows that pass the filter.
  void Reload();
  void DropOldest(std::size_t count);
  void ShowCount(bool follow);
  void Pause(bool paused);
  void Copy();
  std::string TextOf(std::size_t row) const;
  void GiveText(LVITEMA& item);
  HWND List() const;

  const char* const m_caption;
  RowSource& m_rows;
  HWND m_window = nullptr;
  SIZE m_client{};                     // of the window, as it is laid out
  std::deque<std::uint64_t> m_numbers; // of the rows in the list
  std::uint64_t m_next = 0;            // the first row that the list has not seen
  std::uint64_t m_shown = 0;           // changes that the list shows
  bool m_paused = false;
  std::uint64_t m_cached = UINT64_MAX; // the row whose texts these are
  std::vector<std::string> m_texts;
};

} // namespace host
