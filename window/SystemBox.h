// Boxes and dialogs that the system makes, with a modal loop of the system's.
#pragma once

#include "window/WindowPlace.h"

// Lives around the call for one: it comes up over the middle of its owner (which may be null), and the call returns
// when the box is ended or destroyed.
//
// The second is not a matter of course. The loops of some systems look whether their box is still there only behind a
// message. When it was ended inside of a message that was sent, and whoever did that served messages afterwards, the
// one that was to wake the loop is gone; so there is always another one soon.
class CSystemBox {
public:
  explicit CSystemBox(HWND owner) : m_place(owner), m_timer(SetTimer(nullptr, 0, kWakeMs, nullptr)) {}
  CSystemBox(const CSystemBox&) = delete;
  CSystemBox& operator=(const CSystemBox&) = delete;
  ~CSystemBox() { KillTimer(nullptr, m_timer); }

private:
  static constexpr UINT kWakeMs = 100;

  NextWindowOverOwner m_place;
  UINT_PTR m_timer;
};
