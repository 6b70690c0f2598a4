#pragma once

#include "window/CWnd.h"

// A group box that shows its text, of several lines, inside its frame. The system would draw it as one caption.
class CStatusGroupBox : public CWnd {
protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  void OnPaint();
  LRESULT OnSetText(const Message& message);
};
