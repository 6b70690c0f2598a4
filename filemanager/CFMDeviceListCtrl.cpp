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
  const int size = std::max(static_cast<int>(GetClientRect().right) - 2 * narrow, ScaledPixels(kSizeAtLeast));
  SetColumn(kFileId, "File ID", narrow, LVCFMT_RIGHT);
  SetColumn(kFileType, "File type", narrow, LVCFMT_RIGHT);
  SetColumn(kFileSize, "File size", size, LVCFMT_RIGHT);
}

void CFMDeviceListCtrl::Fill(const CONXDialog::CChannelLock& lock) {
  const Batch batch(*this);
  DeleteAllItems();
  for (std::uint32_t i = 0; lock && i < lock.channel()->GetDirectoryEntryCount(); ++i) {
    const int row = AppendItem();
    if (row < 0 || !lock)
      return;
    TDEVDIRENTRY entry{};
    lock.channel()->GetDirectoryEntry(i, &entry);
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
