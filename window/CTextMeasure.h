// Widths of texts as a window draws them.
#pragma once

#include "window/CWnd.h"

#include <string>

// A window's device context with the window's own font selected, released by the destructor.
class CTextMeasure {
public:
  explicit CTextMeasure(const CWnd& window);
  CTextMeasure(const CTextMeasure&) = delete;
  CTextMeasure& operator=(const CTextMeasure&) = delete;
  ~CTextMeasure();

  int Width(const std::string& text) const;       // pixels
  int TabbedWidth(const std::string& text) const; // with the default tab positions

private:
  HWND m_window;
  HDC m_context;
  HGDIOBJ m_previousFont;
};
