#pragma once

#include "window/CWnd.h"

#include <commctrl.h>

#include <string>

// A list view in report view. Rows and columns count from 0.
class CListCtrl : public CWnd {
public:
  // Holds back drawing while rows change. The list may lose its window meanwhile.
  class Batch {
  public:
    explicit Batch(CListCtrl& list) : m_list(list) { m_list.SetRedraw(false); }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch() {
      m_list.SetRedraw(true);
      m_list.Invalidate();
    }

  private:
    CListCtrl& m_list;
  };

  // Adds LVS_EX_… to the styles that are there.
  void AddExtendedStyle(DWORD styles) { Send(LVM_SETEXTENDEDLISTVIEWSTYLE, styles, static_cast<LPARAM>(styles)); }

  // Makes it exactly so many columns: takes some from the end or appends empty ones.
  void SetColumnCount(int count);
  // LVCFMT_…; width in pixels.
  void SetColumn(int column, const char* header, int width, int format);
  void SetColumnWidth(int column, int width) { Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width); }

  int GetItemCount() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
  // Appends an empty row; its index, or negative.
  int AppendItem();
  void DeleteItem(int row) { Send(LVM_DELETEITEM, static_cast<WPARAM>(row)); }
  void DeleteAllItems() { Send(LVM_DELETEALLITEMS); }

  void SetItemText(int row, int column, const std::string& text);
  // At most `limit` characters.
  std::string GetItemText(int row, int column, std::size_t limit) const;

  int GetSelectedCount() const { return static_cast<int>(Send(LVM_GETSELECTEDCOUNT)); }
  // The next selected row behind `row` (-1: the first one), or -1.
  int GetNextSelected(int row) const {
    return GetSafeHwnd() ? static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)) : -1;
  }

private:
  int GetColumnCount() const;
};
