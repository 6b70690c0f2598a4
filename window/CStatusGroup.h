#pragma once

#include "window/CWnd.h"

#include <string>

// A group box whose text may have several lines. The text it has from the template stays in its frame; a text that is
// set later is shown inside of it, where the system's own group box would put it into the frame, lines and all.
class CStatusGroup : public CWnd {
protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  LRESULT OnSetText(const Message& message);
  void OnPaint();
  void Draw(HDC context);

  std::string m_caption; // empty until a text is set
};
