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
  bool CreateModeless(HWND parent) { return Create(parent); }
  // Modal, on any thread, over the middle of its owner or of the screen. What EndDialog was given, or -1 when the
  // window cannot be made or somebody destroyed it.
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

  // Of a modal dialog: hides it at once, and DoModal returns when its turn comes.
  void EndDialog(INT_PTR answer);

private:
  bool Create(HWND parent);
  void RunUntilEnded();
  bool IsEnded() const { return m_isEnded || !GetSafeHwnd(); }
  void EnableOwner();
  static INT_PTR CALLBACK DialogProc(HWND window, UINT number, WPARAM wParam, LPARAM lParam);

  UINT m_templateId = 0;
  const DLGTEMPLATE* m_layout = nullptr; // instead of the template among the resources
  bool m_initFailed = false;
  bool m_isModal = false; // from here on for modal dialogs
  bool m_isEnded = false;
  INT_PTR m_answer = -1;
  HWND m_disabledOwner = nullptr;
};
