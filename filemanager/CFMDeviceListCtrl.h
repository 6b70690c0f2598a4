// The directory of the files that are stored on the device, as of the last refresh.
#pragma once

#include "frame/CONXDialog.h"
#include "window/CListCtrl.h"

#include <cstdint>
#include <vector>

class CFMDeviceListCtrl : public CListCtrl {
public:
  void InitColumns();
  // Shows the directory that the channel holds. Ends early when the lock does.
  void Fill(const CONXDialog::CChannelLock& lock);
  // Of the selected rows in their order; rows whose first column holds no number are passed over.
  std::vector<std::uint8_t> SelectedIds() const;

protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  bool OnSize();
  int SizeWidth() const;
};
