// A list view, read and worked from outside.
#pragma once

#include "tests/windows/support/WindowDriver.h"

#include <commctrl.h>

#include <cstring>

class ListView {
public:
  explicit ListView(Window window) : m_window(window) {}

  Window Handle() const { return m_window; }
  int Count() const { return static_cast<int>(m_window.Send(LVM_GETITEMCOUNT)); }
  std::string Text(int row, int column) const {
    std::string text(2000, '\0');
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    m_window.Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    text.resize(std::strlen(text.c_str()));
    return text;
  }
  void SetText(int row, int column, const std::string& text) const {
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = const_cast<char*>(text.c_str());
    m_window.Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }
  // Each row's texts, joined by blanks.
  std::vector<std::string> Rows() const {
    const auto columns =
        static_cast<int>(Window(reinterpret_cast<HWND>(m_window.Send(LVM_GETHEADER))).Send(HDM_GETITEMCOUNT));
    std::vector<std::string> rows(static_cast<std::size_t>(Count()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (int column = 0; column < columns; ++column)
        rows[row] += (column == 0 ? "" : " ") + Text(static_cast<int>(row), column);
    }
    return rows;
  }
  // "Header width alignment" of each column.
  std::vector<std::string> Columns() const {
    std::vector<std::string> columns;
    char text[100] = "";
    LVCOLUMNA column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.pszText = text;
    column.cchTextMax = sizeof(text);
    while (m_window.Send(LVM_GETCOLUMNA, columns.size(), reinterpret_cast<LPARAM>(&column)) != 0) {
      const bool right = (column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT;
      columns.push_back(std::string(column.pszText) + " " + std::to_string(column.cx) + (right ? " right" : " left"));
    }
    return columns;
  }
  // These and no others.
  void Select(const std::vector<int>& rows) const {
    LVITEMA item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = LVIS_SELECTED;
    for (const int row : rows)
      m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }
  void DoubleClick(int row) const {
    RECT place{LVIR_LABEL, 0, 0, 0};
    m_window.Send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    PostMessageA(m_window.Handle(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(place.left + 5, place.top + 5));
  }

private:
  Window m_window;
};
