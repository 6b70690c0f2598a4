// The properties that one local file gets on the device.
#pragma once

#include "util/JobFile.h"
#include "window/CComboBox.h"
#include "window/CDialog.h"

// Modal. Put a record in, call DoModal, take the record out after IDOK; anything else leaves it as it was. May be used
// for one record after the other.
class CFMFilePropertiesDialog : public CDialog {
public:
  CFMFilePropertiesDialog();

  TFILEENTRY entry; // its path is only shown

protected:
  bool OnInitDialog() override;
  void OnOK() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  void OnModeChanged();
  // Nothing when the control's text is no number; the control then shows `stored` again and the user is told `problem`.
  std::optional<std::uint8_t> ReadNumber(int id, std::uint8_t stored, const char* problem);

  CComboBox m_mode;
};
