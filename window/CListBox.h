#pragma once

#include "window/CWnd.h"

#include <string>

class CTextMeasure;

// A list box of texts. Indexes count from 0.
class CListBox : public CWnd {
public:
  int GetCount() const { return static_cast<int>(Send(LB_GETCOUNT)); }
  // Index of the new item, or negative when the list box is out of memory.
  int AddString(const std::string& text);
  void DeleteString(int index) { Send(LB_DELETESTRING, static_cast<WPARAM>(index)); }
  void ResetContent() { Send(LB_RESETCONTENT); }
  std::string GetText(int index) const;

  int GetCurSel() const { return static_cast<int>(Send(LB_GETCURSEL)); } // negative: none
  void SetCurSel(int index) { Send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
  void SetTopIndex(int index) { Send(LB_SETTOPINDEX, static_cast<WPARAM>(index)); }

  // Width in pixels that horizontal scrolling covers.
  void SetHorizontalExtent(int width) { Send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width)); }
  // Width of the widest item, 0 for an empty list. Measures every item.
  virtual int WidestItem();

protected:
  int ItemWidth(const CTextMeasure& measure, int index) const;
};
