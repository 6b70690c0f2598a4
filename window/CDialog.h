// Dialogs from the templates in the module's own resources.
#pragma once

#include "window/CWnd.h"

class CDialog : public CWnd {
public:
  explicit CDialog(UINT templateId) : m_templateId(templateId) {}
  // A modal dialog with a template that is not among the resources, and outlives the object.
  explicit CDialog(const DLGTEMPLATE& layout) : m_layout(&layout) {}
  // Destroys a window that is still there; derived objects no longer hear of that.
  ~CDialog() override;

  // Modeless: makes the window, hidden unless the template says otherwise. False when that fails or OnInitDialog
  // throws.
  bool CreateModeless(HWND parent);
  // Modal, on any thread, over the middle of its owner or of the screen. What EndDialog was given, or -1 when the
  // window cannot be made.
  INT_PTR DoModal(HWND parent);

protected:
  // --- meant to be overridden

  // The window and its controls are there, nothing is visible yet. True: the system sets the focus.
  virtual bool OnInitDialog() { return true; }
  // Enter or the button with id 1, Escape or the button with id 2. Here they end a modal dialog.
  virtual void OnOK() { EndDialog(IDOK); }
  virtual void OnCancel() { EndDialog(IDCANCEL); }
  bool OnWndMsg(const Message& message, LRESULT& result) override;

  // --- not meant to be

  void EndDialog(INT_PTR answer) { ::EndDialog(GetSafeHwnd(), answer); }

private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT number, WPARAM wParam, LPARAM lParam);

  UINT m_templateId = 0;
  const DLGTEMPLATE* m_layout = nullptr; // instead of the template among the resources
  bool m_isModal = false;
  bool m_initFailed = false;
};
