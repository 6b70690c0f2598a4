#include "window/CTextMeasure.h"

namespace {

// A window that was never given a font draws in the system font.
HGDIOBJ FontOf(const CWnd& window) {
  const auto font = reinterpret_cast<HGDIOBJ>(window.Send(WM_GETFONT));
  return font ? font : GetStockObject(SYSTEM_FONT);
}

} // namespace

CTextMeasure::CTextMeasure(const CWnd& window)
    : m_window(window.GetSafeHwnd()), m_context(GetDC(m_window)),
      m_previousFont(SelectObject(m_context, FontOf(window))) {}

CTextMeasure::~CTextMeasure() {
  SelectObject(m_context, m_previousFont);
  ReleaseDC(m_window, m_context);
}

int CTextMeasure::Width(const std::string& text) const {
  SIZE size{};
  GetTextExtentPoint32A(m_context, text.data(), static_cast<int>(text.size()), &size);
  return size.cx;
}

// The system's answer holds 16 bits, so a text without tabs is better measured plainly.
int CTextMeasure::TabbedWidth(const std::string& text) const {
  if (text.find('\t') == std::string::npos)
    return Width(text);
  return LOWORD(GetTabbedTextExtentA(m_context, text.data(), static_cast<int>(text.size()), 0, nullptr));
}

std::size_t CTextMeasure::Fitting(std::string_view text, int width) const {
  int count = 0;
  SIZE size{};
  GetTextExtentExPointA(m_context, text.data(), static_cast<int>(text.size()), width, &count, nullptr, &size);
  return static_cast<std::size_t>(count);
}

int CTextMeasure::WrappedHeight(const std::string& text, int width) const {
  RECT place{0, 0, width, 0};
  return DrawTextA(m_context, text.data(), static_cast<int>(text.size()), &place,
                   DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_EXPANDTABS | DT_NOPREFIX);
}
