#include "filemanager/COndFMLocalListCtrl.h"

#include "filemanager/CFMFilePropertiesDialog.h"
#include "filemanager/LocalFileRow.h"
#include "window/ScreenScale.h"

#include <algorithm>

namespace {

enum Column { kPath, kFileId, kFileType, kFileMode, kColumns };

constexpr std::size_t kLongestText = 260; // characters that are read of a column
constexpr int kNarrow = 50;               // width of every column but the path, in pixels at 96 dpi
constexpr int kPathAtLeast = 200;

void SetRow(CListCtrl& list, int index, const TLOCALFILEROW& row) {
  list.SetItemText(index, kPath, row.path);
  list.SetItemText(index, kFileId, row.fileId);
  list.SetItemText(index, kFileType, row.fileType);
  list.SetItemText(index, kFileMode, row.fileMode);
}

} // namespace

void COndFMLocalListCtrl::InitColumns() {
  AddExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
  SetColumnCount(kColumns);
  const int narrow = ScaledPixels(kNarrow);
  SetColumn(kPath, "Filename", PathWidth(), LVCFMT_LEFT);
  SetColumn(kFileId, "File ID", narrow, LVCFMT_RIGHT);
  SetColumn(kFileType, "File type", narrow, LVCFMT_RIGHT);
  SetColumn(kFileMode, "File mode", narrow, LVCFMT_RIGHT);
}

// What the other columns leave.
int COndFMLocalListCtrl::PathWidth() const {
  return std::max(static_cast<int>(GetClientRect().right) - 3 * ScaledPixels(kNarrow), ScaledPixels(kPathAtLeast));
}

// --- rows

void COndFMLocalListCtrl::GetEntry(int row, TFILEENTRY& entry) const {
  const auto text = [&](Column column) { return GetItemText(row, column, kLongestText); };
  entry = EntryOf({text(kPath), text(kFileId), text(kFileType), text(kFileMode)});
}

void COndFMLocalListCtrl::SetEntry(int row, const TFILEENTRY& entry) {
  SetRow(*this, row, RowOf(entry));
}

void COndFMLocalListCtrl::SetDefaultEntry(int row, const std::string& path) {
  SetRow(*this, row, DefaultRowOf(path));
}

void COndFMLocalListCtrl::AddFile(const std::string& path) {
  SetDefaultEntry(AppendItem(), path);
}

void COndFMLocalListCtrl::AddEntry(const TFILEENTRY& entry) {
  SetEntry(AppendItem(), entry);
}

// The vertical scroll bar comes and goes with the rows; without this a horizontal one would come with it.
bool COndFMLocalListCtrl::OnSize() {
  SetColumnWidth(kPath, PathWidth());
  return false;
}

// --- the user's input

bool COndFMLocalListCtrl::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&COndFMLocalListCtrl::OnSize>(WM_SIZE),
      OnMessage<&COndFMLocalListCtrl::OnKeyDown>(WM_KEYDOWN),
      OnReflectedNotify<&COndFMLocalListCtrl::OnDoubleClick>(static_cast<UINT>(NM_DBLCLK)),
  };
  return Dispatch(kMap, message, result) || CListCtrl::OnWndMsg(message, result);
}

bool COndFMLocalListCtrl::OnKeyDown(const Message& message) {
  switch (message.wParam) {
  case VK_SPACE:
    EditSelected();
    break;
  case VK_DELETE:
    RemoveSelected();
    break;
  default:
    return false;
  }
  Notify();
  return true;
}

LRESULT COndFMLocalListCtrl::OnDoubleClick() {
  EditSelected();
  Notify();
  return 0;
}

// One dialog after the other, as many as rows are selected now. Each pumps messages: afterwards rows may be gone, or
// the list itself, and then there is no next row.
void COndFMLocalListCtrl::EditSelected() {
  CFMFilePropertiesDialog dialog;
  int row = -1;
  for (int count = GetSelectedCount(); count > 0; --count) {
    row = GetNextSelected(row);
    if (row < 0)
      return;
    GetEntry(row, dialog.entry);
    const HWND parent = GetParent(GetSafeHwnd());
    if (dialog.DoModal(parent) == IDOK)
      SetEntry(row, dialog.entry);
  }
}

void COndFMLocalListCtrl::RemoveSelected() {
  const Batch batch(*this);
  for (int row = GetNextSelected(-1); row >= 0; row = GetNextSelected(-1))
    DeleteItem(row);
}

void COndFMLocalListCtrl::Notify() const {
  if (m_notifyWindow && m_notifyMessage != 0)
    SendMessageA(m_notifyWindow, m_notifyMessage, 0, 0);
}
