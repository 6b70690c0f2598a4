#include "window/CDialog.h"

#include "window/CWinApp.h"
#include "window/WindowPlace.h"

#include <commctrl.h>

namespace {

// The window classes of list views and progress bars, once per process.
void RegisterCommonControls() {
  static const BOOL registered = [] {
    const INITCOMMONCONTROLSEX classes{sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
    return InitCommonControlsEx(&classes);
  }();
  static_cast<void>(registered); // a dialog whose controls are missing cannot be made, which its maker reports
}

// These messages' answers are the dialog procedure's own answer instead of DWLP_MSGRESULT.
bool AnswersDirectly(UINT number) {
  return (number >= WM_CTLCOLORMSGBOX && number <= WM_CTLCOLORSTATIC) || number == WM_COMPAREITEM ||
         number == WM_VKEYTOITEM || number == WM_CHARTOITEM || number == WM_QUERYDRAGICON || number == WM_INITDIALOG;
}

} // namespace

CDialog::~CDialog() {
  if (const HWND window = GetSafeHwnd()) {
    SetWindowLongPtrA(window, DWLP_USER, 0);
    ::DestroyWindow(window);
  }
}

// OnInitDialog may open a box, behind which the window may be destroyed and this object be deleted.
bool CDialog::CreateModeless(HWND parent) {
  RegisterCommonControls();
  m_initFailed = false;
  const CKeepAlive keep(*this);
  CreateDialogParamA(CWinApp::GetModuleInstance(), MAKEINTRESOURCEA(m_templateId), parent, DialogProc,
                     reinterpret_cast<LPARAM>(this));
  if (m_initFailed)
    ::DestroyWindow(GetSafeHwnd());
  return GetSafeHwnd() != nullptr;
}

INT_PTR CDialog::DoModal(HWND parent) {
  RegisterCommonControls();
  m_initFailed = false;
  m_isModal = true;
  if (m_layout)
    return DialogBoxIndirectParamA(CWinApp::GetModuleInstance(), m_layout, parent, DialogProc,
                                   reinterpret_cast<LPARAM>(this));
  return DialogBoxParamA(CWinApp::GetModuleInstance(), MAKEINTRESOURCEA(m_templateId), parent, DialogProc,
                         reinterpret_cast<LPARAM>(this));
}

bool CDialog::OnWndMsg(const Message& message, LRESULT& result) {
  if (message.number == WM_INITDIALOG) {
    result = OnInitDialog();
    return true;
  }
  if (message.number == WM_COMMAND && HIWORD(message.wParam) == BN_CLICKED) {
    switch (LOWORD(message.wParam)) {
    case IDOK:
      OnOK();
      return true;
    case IDCANCEL:
      OnCancel();
      return true;
    }
  }
  return CWnd::OnWndMsg(message, result);
}

INT_PTR CALLBACK CDialog::DialogProc(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
  if (number == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lParam);
    reinterpret_cast<CDialog*>(lParam)->SetHandle(window);
  }
  auto* const dialog = reinterpret_cast<CDialog*>(GetWindowLongPtrA(window, DWLP_USER));
  if (!dialog)
    return FALSE;
  // A modal loop of this thread notices the end of its window only with the next message, which it then throws away.
  if (number == WM_NCDESTROY)
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
  LRESULT result = 0;
  if (number == WM_INITDIALOG) {
    dialog->HandleMessage({number, wParam, lParam}, result, &dialog->m_initFailed);
    if (dialog->m_initFailed)
      ::EndDialog(window, -1); // for modal dialogs; CreateModeless destroys its own
    else if (dialog->m_isModal)
      CenterWindow(window);
    return result;
  }
  if (!dialog->HandleMessage({number, wParam, lParam}, result))
    return FALSE;
  if (AnswersDirectly(number))
    return result;
  SetWindowLongPtrA(window, DWLP_MSGRESULT, result); // harmless when the handler ended the window
  return TRUE;
}
