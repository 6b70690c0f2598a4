#pragma once

#include "window/CWnd.h"

class CEdit : public CWnd {
public:
  // Positions in characters; from 0 to -1 is everything. Scrolls the caret into view.
  void SetSel(int from, int to) {
    Send(EM_SETSEL, static_cast<WPARAM>(from), to);
    Send(EM_SCROLLCARET);
  }
};
