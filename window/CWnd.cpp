#include "window/CWnd.h"

#include "window/MessageBoxes.h"

bool MessageEntry::Matches(const Message& incoming) const {
  if (message != incoming.number)
    return false;
  switch (message) {
  case WM_COMMAND:
    return LOWORD(incoming.wParam) == id && HIWORD(incoming.wParam) == code;
  case WM_NOTIFY:
    return incoming.Notification().idFrom == id && incoming.Notification().code == code;
  case kReflectedNotify:
    return incoming.Notification().code == code;
  default:
    return true;
  }
}

CWnd::~CWnd() {
  Unsubclass();
}

RECT CWnd::GetClientRect() const {
  RECT rect{};
  ::GetClientRect(m_hWnd, &rect);
  return rect;
}

RECT CWnd::GetWindowRect() const {
  RECT rect{};
  ::GetWindowRect(m_hWnd, &rect);
  return rect;
}

// To the system, no window means "the whole desktop", "nobody" or "the thread" in the next five.

void CWnd::SetFocus() {
  if (m_hWnd)
    ::SetFocus(m_hWnd);
}

void CWnd::Invalidate(bool erase) {
  if (m_hWnd)
    ::InvalidateRect(m_hWnd, nullptr, erase);
}

bool CWnd::SetTimer(UINT_PTR id, UINT milliseconds) {
  return m_hWnd && ::SetTimer(m_hWnd, id, milliseconds, nullptr) != 0;
}

void CWnd::KillTimer(UINT_PTR id) {
  if (m_hWnd)
    ::KillTimer(m_hWnd, id);
}

int CWnd::MessageBox(const std::string& text, const std::string& caption, UINT type) {
  return m_hWnd ? ShowMessageBox(m_hWnd, text, caption, type) : 0;
}

std::string CWnd::TextOf(HWND window) {
  std::string text(static_cast<std::size_t>(::GetWindowTextLengthA(window)), '\0');
  text.resize(static_cast<std::size_t>(::GetWindowTextA(window, text.data(), static_cast<int>(text.size()) + 1)));
  return text;
}

void CWnd::SetTextOf(HWND window, const std::string& text) {
  if (TextOf(window) != text)
    ::SetWindowTextA(window, text.c_str());
}

void CWnd::EnableDlgItem(int id, bool enable) {
  if (!enable && HasFocus(id))
    Send(WM_NEXTDLGCTL);
  ::EnableWindow(GetDlgItem(id), enable);
}

bool CWnd::OnWndMsg(const Message& message, LRESULT& result) {
  if (message.number == WM_NOTIFY) {
    result = SendMessageA(message.Notification().hwndFrom, kReflectedNotify, message.wParam, message.lParam);
    return result != 0;
  }
  return false;
}

bool CWnd::Dispatch(std::span<const MessageEntry> map, const Message& message, LRESULT& result) {
  for (const MessageEntry& entry : map)
    if (entry.Matches(message))
      return entry.member(*this, message, result);
  return false;
}

bool CWnd::HandleMessage(const Message& message, LRESULT& result, bool* failed) {
  const CKeepAlive keep(*this);
  bool handled = false;
  try {
    handled = OnWndMsg(message, result);
  } catch (...) { // memory ran out, most likely; the message counts as not handled
    if (failed)
      *failed = true;
  }
  if (message.number == WM_NCDESTROY) {
    Unsubclass();
    m_hWnd = nullptr;
  }
  return handled;
}

void CWnd::OperationReturned() {
  if (--m_running == 0 && m_deleteWhenIdle)
    delete this;
}

void CWnd::DeleteWhenIdle() {
  m_deleteWhenIdle = true;
  if (m_running == 0)
    delete this;
}

bool CWnd::SubclassDlgItem(int id, CWnd& parent) {
  const HWND control = parent.GetDlgItem(id);
  if (!control || m_hWnd)
    return false;
  m_hWnd = control;
  m_keeper = parent.m_keeper;
  m_superProc = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(control, GWLP_WNDPROC));
  SetWindowLongPtrA(control, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ControlProc));
  return true;
}

// A control's user data is the module's from subclassing to the control's end.
void CWnd::Unsubclass() {
  if (m_hWnd && m_superProc) {
    SetWindowLongPtrA(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_superProc));
    SetWindowLongPtrA(m_hWnd, GWLP_USERDATA, 0);
    m_superProc = nullptr;
  }
}

LRESULT CALLBACK CWnd::ControlProc(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
  auto* const object = reinterpret_cast<CWnd*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (!object)
    return DefWindowProcA(window, number, wParam, lParam);
  const WNDPROC superProc = object->m_superProc; // the object may be gone after its handler
  LRESULT result = 0;
  if (object->HandleMessage({number, wParam, lParam}, result))
    return result;
  return CallWindowProcA(superProc, window, number, wParam, lParam);
}
