#include "window/CStatusGroupBox.h"

#include "window/CTextMeasure.h"

bool CStatusGroupBox::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&CStatusGroupBox::OnPaint>(WM_PAINT),
      OnMessage<&CStatusGroupBox::OnSetText>(WM_SETTEXT),
  };
  return Dispatch(kMap, message, result) || CWnd::OnWndMsg(message, result);
}

// Past the control's own class, which would draw at once.
LRESULT CStatusGroupBox::OnSetText(const Message& message) {
  const LRESULT answer = DefWindowProcA(GetSafeHwnd(), message.number, message.wParam, message.lParam);
  Invalidate();
  return answer;
}

void CStatusGroupBox::OnPaint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(GetSafeHwnd(), &paint);
  RECT place = GetClientRect();
  FillRect(context, &place, GetSysColorBrush(COLOR_BTNFACE));
  DrawEdge(context, &place, EDGE_ETCHED, BF_RECT);
  const CTextMeasure measure(*this);
  const int margin = measure.Width(" ") * 2;
  InflateRect(&place, -margin, -margin);
  const HGDIOBJ previousFont = SelectObject(context, reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT)));
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
  const std::string text = GetWindowText();
  DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &place, DT_NOPREFIX | DT_EXPANDTABS);
  SelectObject(context, previousFont);
  EndPaint(GetSafeHwnd(), &paint);
}
