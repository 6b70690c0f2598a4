#pragma once

#include "window/CWnd.h"

// A font for controls. Controls borrow it, so it lives at least as long as they do.
class CFont {
public:
  CFont() = default;
  CFont(const CFont&) = delete;
  CFont& operator=(const CFont&) = delete;
  ~CFont() { DeleteObject(m_font); } // a stock font survives this

  // One of the system's own fonts, such as SYSTEM_FIXED_FONT.
  void CreateStockObject(int which) {
    DeleteObject(m_font);
    m_font = GetStockObject(which);
  }
  // Makes a window draw its text in this font.
  void ApplyTo(CWnd& window) const { window.Send(WM_SETFONT, reinterpret_cast<WPARAM>(m_font), TRUE); }

private:
  HGDIOBJ m_font = nullptr;
};
