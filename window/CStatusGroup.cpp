#include "window/CStatusGroup.h"

namespace {

constexpr UINT kTextFlags = DT_NOPREFIX | DT_NOCLIP | DT_LEFT;

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
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(GetSafeHwnd(), &paint);
  const HGDIOBJ font = SelectObject(context, reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT)));
  Draw(context);
  SelectObject(context, font);
  EndPaint(GetSafeHwnd(), &paint);
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
