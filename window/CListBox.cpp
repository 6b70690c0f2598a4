#include "window/CListBox.h"

#include "window/CTextMeasure.h"

#include <algorithm>

int CListBox::AddString(const std::string& text) {
  return static_cast<int>(Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

std::string CListBox::GetText(int index) const {
  const LRESULT length = Send(LB_GETTEXTLEN, static_cast<WPARAM>(index));
  if (length <= 0)
    return {};
  std::string text(static_cast<std::size_t>(length), '\0');
  const LRESULT copied = Send(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(copied < 0 ? 0 : static_cast<std::size_t>(copied));
  return text;
}

int CListBox::WidestItem() {
  const CTextMeasure measure(*this);
  int widest = 0;
  for (int i = 0, count = GetCount(); i < count; ++i)
    widest = std::max(widest, ItemWidth(measure, i));
  return widest;
}

int CListBox::ItemWidth(const CTextMeasure& measure, int index) const {
  const bool tabs = (GetWindowLongPtrA(GetSafeHwnd(), GWL_STYLE) & LBS_USETABSTOPS) != 0;
  return tabs ? measure.TabbedWidth(GetText(index)) : measure.Width(GetText(index));
}
