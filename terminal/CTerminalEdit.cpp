#include "terminal/CTerminalEdit.h"

bool CTerminalEdit::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {OnMessage<&CTerminalEdit::OnKeyDown>(WM_KEYDOWN)};
  return Dispatch(kMap, message, result) || CEdit::OnWndMsg(message, result);
}

bool CTerminalEdit::OnKeyDown(const Message& message) {
  return m_keyMessage != 0 && SendMessageA(GetParent(GetSafeHwnd()), m_keyMessage, message.wParam, 0) != 0;
}
