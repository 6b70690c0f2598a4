// Widths of texts as a window draws them.
#pragma once

#include "window/CWnd.h"

#include <string>
#include <string_view>

// A window's device context with the window's own font selected, released by the destructor.
class CTextMeasure {
public:
  explicit CTextMeasure(const CWnd& window);
  CTextMeasure(const CTextMeasure&) = delete;
  CTextMeasure& operator=(const CTextMeasure&) = delete;
  ~CTextMeasure();

  int Width(const std::string& text) const;       // pixels
  int TabbedWidth(const std::string& text) const; // with the default tab positions
  // How many characters at the start of a text are no wider than that.
  std::size_t Fitting(std::string_view text, int width) const;
  // Of a text in lines of that width at most, broken between words and, where a word is wider, in the word.
  int WrappedHeight(const std::string& text, int width) const;

private:
  HWND m_window;
  HDC m_context;
  HGDIOBJ m_previousFont;
};
