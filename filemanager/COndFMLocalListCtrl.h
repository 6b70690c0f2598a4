// The local files that are to be copied, each with the properties it gets on the device. The rows' texts are the only
// store of these; whoever needs records reads them back.
#pragma once

#include "util/JobFile.h"
#include "window/CListCtrl.h"

#include <string>

// A double-click and Space edit the properties of the selected rows, Delete removes them. Rows keep the order in which
// they came.
class COndFMLocalListCtrl : public CListCtrl {
public:
  virtual void InitColumns();
  // When both are set, the message goes to the window after the user has edited or removed rows.
  virtual void SetNotifyWindow(HWND window) { m_notifyWindow = window; }
  virtual void SetNotifyMessage(UINT message) { m_notifyMessage = message; }

  virtual void GetEntry(int row, TFILEENTRY& entry) const;
  virtual void SetEntry(int row, const TFILEENTRY& entry);
  // The path, and the properties of a file that was just chosen.
  virtual void SetDefaultEntry(int row, const std::string& path);
  // Append a row.
  virtual void AddFile(const std::string& path);
  virtual void AddEntry(const TFILEENTRY& entry);

protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  bool OnSize();
  bool OnKeyDown(const Message& message);
  LRESULT OnDoubleClick();

  int PathWidth() const;
  void EditSelected();
  void RemoveSelected();
  void Notify() const;

  HWND m_notifyWindow = nullptr;
  UINT m_notifyMessage = 0;
};
