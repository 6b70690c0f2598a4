#include "window/CStatusGroup.h"

namespace {

constexpr UINT kTextFlags = DT_NOPREFIX | DT_NOCLIP | DT_LEFT;

// From BeginPaint to EndPaint, in the window's own font.
class Painting {
public:
  explicit Painting(const CWnd& window)
      : m_window(window.GetSafeHwnd()), m_context(BeginPaint(m_window, &m_paint)),
        m_previousFont(SelectObject(m_context, reinterpret_cast<HGDIOBJ>(window.Send(WM_GETFONT)))) {}
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() {
    SelectObject(m_context, m_previousFont);
    EndPaint(m_window, &m_paint);
  }

  HDC Context() const { return m_context; }

private:
  HWND m_window;
  PAINTSTRUCT m_paint{};
  HDC m_context;
  HGDIOBJ m_previousFont;
};

int LineHeight(HDC context) {
  TEXTMETRICA metrics{};
  GetTextMetricsA(context, &metrics);
  return metrics.tmHeight;
}

} // namespace

bool CStatusGroup::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&CStatusGroup::OnSetText>(WM_SETTEXT),
      OnMessage<&CStatusGroup::OnPaint>(WM_PAINT),
  };
  return Dispatch(kMap, message, result) || CWnd::OnWndMsg(message, result);
}

// Past the button's own procedure, which would draw at once.
LRESULT CStatusGroup::OnSetText(const Message& message) {
  if (m_caption.empty())
    m_caption = GetWindowText();
  const LRESULT result = DefWindowProcA(GetSafeHwnd(), message.number, message.wParam, message.lParam);
  Invalidate();
  return result;
}

void CStatusGroup::OnPaint() {
  const Painting painting(*this);
  Draw(painting.Context());
}

// The frame runs through the middle of its caption.
void CStatusGroup::Draw(HDC context) {
  RECT area = GetClientRect();
  FillRect(context, &area, GetSysColorBrush(COLOR_BTNFACE));
  SetBkColor(context, GetSysColor(COLOR_BTNFACE));
  SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
  const int line = LineHeight(context);
  RECT frame = area;
  frame.top += line / 2;
  DrawEdge(context, &frame, EDGE_ETCHED, BF_RECT);
  area.left += line / 2;
  const std::string text = GetWindowText();
  const std::string& caption = m_caption.empty() ? text : m_caption;
  DrawTextA(context, caption.c_str(), -1, &area, kTextFlags | DT_SINGLELINE);
  if (!m_caption.empty()) {
    area.top += line;
    area.right -= line / 2;
    DrawTextA(context, text.c_str(), -1, &area, kTextFlags & ~UINT{DT_NOCLIP});
  }
}
