#include "filemanager/CFMDeviceListCtrl.h"

#include "util/ScanNumber.h"
#include "window/ScreenScale.h"

#include <algorithm>

namespace {

enum Column { kFileId, kFileType, kFileSize, kColumns };

constexpr std::size_t kLongestText = 1024;
constexpr int kNarrow = 60; // pixels at 96 dpi
constexpr int kSizeAtLeast = 100;

} // namespace

void CFMDeviceListCtrl::InitColumns() {
  AddExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
  SetColumnCount(kColumns);
  const int narrow = ScaledPixels(kNarrow);
  SetColumn(kFileId, "File ID", narrow, LVCFMT_RIGHT);
  SetColumn(kFileType, "File type", narrow, LVCFMT_RIGHT);
  SetColumn(kFileSize, "File size", SizeWidth(), LVCFMT_RIGHT);
}

// What the other columns leave.
int CFMDeviceListCtrl::SizeWidth() const {
  return std::max(static_cast<int>(GetClientRect().right) - 2 * ScaledPixels(kNarrow), ScaledPixels(kSizeAtLeast));
}

bool CFMDeviceListCtrl::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {OnMessage<&CFMDeviceListCtrl::OnSize>(WM_SIZE)};
  return Dispatch(kMap, message, result) || CListCtrl::OnWndMsg(message, result);
}

// The vertical scroll bar comes and goes with the rows; without this a horizontal one would come with it.
bool CFMDeviceListCtrl::OnSize() {
  SetColumnWidth(kFileSize, SizeWidth());
  return false;
}

void CFMDeviceListCtrl::Fill(const CONXDialog::CChannelLock& lock) {
  const Batch batch(*this);
  DeleteAllItems();
  for (std::uint32_t i = 0; i < lock.Ask(&COndDeviceComm_0::GetDirectoryEntryCount); ++i) {
    TDEVDIRENTRY entry{};
    lock.Ask(&COndDeviceComm_0::GetDirectoryEntry, i, &entry);
    const int row = lock ? AppendItem() : -1;
    if (row < 0)
      return;
    SetItemText(row, kFileId, std::to_string(entry.fileId));
    SetItemText(row, kFileType, std::to_string(entry.fileType));
    SetItemText(row, kFileSize, std::to_string(entry.fileSize));
  }
}

std::vector<std::uint8_t> CFMDeviceListCtrl::SelectedIds() const {
  std::vector<std::uint8_t> ids;
  for (int row = GetNextSelected(-1); row >= 0; row = GetNextSelected(row)) {
    if (const auto id = ScanNumber(GetItemText(row, kFileId, kLongestText), NumberFormat::kUnsigned))
      ids.push_back(static_cast<std::uint8_t>(*id));
  }
  return ids;
}
