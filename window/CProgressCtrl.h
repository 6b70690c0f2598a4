#pragma once

#include "window/CWnd.h"

#include <commctrl.h>

class CProgressCtrl : public CWnd {
public:
  void SetRange(int lower, int upper) { Send(PBM_SETRANGE32, static_cast<WPARAM>(lower), upper); }
  void SetPos(int position) { Send(PBM_SETPOS, static_cast<WPARAM>(position)); }
};
