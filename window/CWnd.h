// Base of the module's windows: a handle and the way from its messages to the object.
//
// An object is used on the thread that owns its window, and never copied. It borrows the handle: a window lives until
// somebody destroys it, and the object forgets it with its last message (WM_NCDESTROY). Text is 8-bit in the system
// code page. Operations on an object without a window do nothing and answer what the system answers for no window.
#pragma once

#include "window/MessageMap.h"

#include <span>
#include <string>

class CWnd {
public:
  CWnd() = default;
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  // Leaves a subclassed control to its own class again.
  virtual ~CWnd();

  HWND GetSafeHwnd() const { return m_hWnd; }

  // --- the window itself

  virtual bool DestroyWindow() { return ::DestroyWindow(m_hWnd) != FALSE; }
  void ShowWindow(int command) { ::ShowWindow(m_hWnd, command); }
  void SetFocus();
  void Invalidate(bool erase = true);
  void SetRedraw(bool redraw) { Send(WM_SETREDRAW, redraw); }
  RECT GetClientRect() const;
  RECT GetWindowRect() const;

  std::string GetWindowText() const { return TextOf(m_hWnd); }
  // Sets the text only where it differs, so that a refresh does not flicker.
  void SetWindowText(const std::string& text) { SetTextOf(m_hWnd, text); }

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(m_hWnd, message, wParam, lParam);
  }
  bool SetTimer(UINT_PTR id, UINT milliseconds);
  void KillTimer(UINT_PTR id);

  // A box of this window's; MB_… and ID…. It pumps messages: afterwards this window may be gone (`GetSafeHwnd()` is
  // null) and the host may have done anything, except that this object still exists while one of its handlers runs. 0
  // when the box cannot be shown.
  int MessageBox(const std::string& text, const std::string& caption, UINT type);
  // The box of a failed user action: caption "Error", exclamation icon.
  void ShowError(const std::string& text) { MessageBox(text, "Error", MB_OK | MB_ICONEXCLAMATION); }

  // --- its controls, by id; a control that is not there is passed over

  HWND GetDlgItem(int id) const { return ::GetDlgItem(m_hWnd, id); }
  std::string GetDlgItemText(int id) const { return TextOf(GetDlgItem(id)); }
  void SetDlgItemText(int id, const std::string& text) { SetTextOf(GetDlgItem(id), text); }
  // A control that loses the focus thereby hands it on to the next one.
  void EnableDlgItem(int id, bool enable);
  bool HasFocus(int id) const { return m_hWnd && ::GetFocus() == GetDlgItem(id); }
  bool IsDlgButtonChecked(int id) const { return ::IsDlgButtonChecked(m_hWnd, id) == BST_CHECKED; }
  void CheckDlgButton(int id, bool checked) { ::CheckDlgButton(m_hWnd, id, checked ? BST_CHECKED : BST_UNCHECKED); }

  // Takes over a control of `parent` (a member object of it): its messages come through this object's map first. False
  // when there is no such control.
  bool SubclassDlgItem(int id, CWnd& parent);

  // Deletes the object (made by new): now, or when the last of its handlers that are running on this thread has
  // returned.
  void DeleteWhenIdle();

protected:
  // Keeps an object whose operation is running although it may be deleted meanwhile (DeleteWhenIdle).
  class CKeepAlive {
  public:
    explicit CKeepAlive(CWnd& window) : m_keeper(*window.m_keeper) { ++m_keeper.m_running; }
    CKeepAlive(const CKeepAlive&) = delete;
    CKeepAlive& operator=(const CKeepAlive&) = delete;
    ~CKeepAlive() { m_keeper.OperationReturned(); }

  private:
    CWnd& m_keeper;
  };

  // Meant to be overridden: dispatches one message by the class's map and hands on to the base class what is not there.
  // False: the default handling follows.
  virtual bool OnWndMsg(const Message& message, LRESULT& result);

  bool Dispatch(std::span<const MessageEntry> map, const Message& message, LRESULT& result);

  // For the class that made the window.
  void SetHandle(HWND window) { m_hWnd = window; }
  // Everything that a window procedure does with a message: finds no exception too wild, keeps the object alive while
  // its handler runs. `failed` (may be null) tells of an exception. Afterwards the object may be deleted.
  bool HandleMessage(const Message& message, LRESULT& result, bool* failed = nullptr);

private:
  static std::string TextOf(HWND window);
  static void SetTextOf(HWND window, const std::string& text);
  static LRESULT CALLBACK ControlProc(HWND window, UINT number, WPARAM wParam, LPARAM lParam);
  void Unsubclass();
  void OperationReturned();

  HWND m_hWnd = nullptr;
  WNDPROC m_superProc = nullptr; // of a subclassed control: its class's own procedure
  CWnd* m_keeper = this;         // the object that this one is part of: busy while this one is
  int m_running = 0;             // operations of this object and its parts on the stack
  bool m_deleteWhenIdle = false;
};
