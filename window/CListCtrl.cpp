#include "window/CListCtrl.h"

int CListCtrl::GetColumnCount() const {
  const auto header = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
  return static_cast<int>(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0));
}

void CListCtrl::SetColumnCount(int count) {
  int columns = GetColumnCount();
  while (columns > count && Send(LVM_DELETECOLUMN, static_cast<WPARAM>(count)))
    --columns;
  LVCOLUMNA empty{};
  while (columns < count &&
         Send(LVM_INSERTCOLUMNA, static_cast<WPARAM>(columns), reinterpret_cast<LPARAM>(&empty)) >= 0)
    ++columns;
}

void CListCtrl::SetColumn(int column, const char* header, int width, int format) {
  LVCOLUMNA properties{};
  properties.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
  properties.fmt = format;
  properties.cx = width;
  properties.pszText = const_cast<char*>(header); // only read
  Send(LVM_SETCOLUMNA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&properties));
}

int CListCtrl::AppendItem() {
  LVITEMA item{};
  item.iItem = GetItemCount();
  return static_cast<int>(Send(LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
}

void CListCtrl::SetItemText(int row, int column, const std::string& text) {
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = const_cast<char*>(text.c_str()); // only read
  Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

std::string CListCtrl::GetItemText(int row, int column, std::size_t limit) const {
  std::string text(limit + 1, '\0');
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  // The answer is a length in characters, which is no number of bytes in some code pages.
  Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  text.resize(std::char_traits<char>::length(text.c_str()));
  return text;
}
