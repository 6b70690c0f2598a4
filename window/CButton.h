#pragma once

#include "window/CWnd.h"

class CButton : public CWnd {
public:
  int GetCheck() const { return static_cast<int>(Send(BM_GETCHECK)); } // BST_…
  void SetCheck(int state) { Send(BM_SETCHECK, static_cast<WPARAM>(state)); }
};
