#include "window/CDialog.h"

#include "window/CWinApp.h"
#include "window/WindowPlace.h"

#include <commctrl.h>

#include <utility>

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
bool CDialog::Create(HWND parent) {
  RegisterCommonControls();
  m_initFailed = false;
  const HINSTANCE module = CWinApp::GetModuleInstance();
  const auto self = reinterpret_cast<LPARAM>(this);
  const CKeepAlive keep(*this);
  if (m_layout)
    CreateDialogIndirectParamA(module, m_layout, parent, DialogProc, self);
  else
    CreateDialogParamA(module, MAKEINTRESOURCEA(m_templateId), parent, DialogProc, self);
  if (m_initFailed)
    ::DestroyWindow(GetSafeHwnd());
  return GetSafeHwnd() != nullptr;
}

INT_PTR CDialog::DoModal(HWND parent) {
  const HWND owner = GetAncestor(parent, GA_ROOT);
  m_disabledOwner = owner && !::EnableWindow(owner, FALSE) ? owner : nullptr;
  m_isModal = true;
  m_isEnded = false;
  m_answer = -1;
  if (Create(owner))
    RunUntilEnded();
  EnableOwner(); // first, so that it is the one to be activated next
  ::DestroyWindow(GetSafeHwnd());
  return m_answer;
}

// A loop of its own instead of DialogBox's, which on some systems notices that its window has gone only behind the next
// message. Whoever destroyed the window, inside of a message that was sent, may have served messages since, and taken
// away any that was to wake the loop. This one looks before it waits: what ends the window runs on this thread, in the
// middle of the look for messages or of one of them. Those of the thread's other windows pass as they are, not in 8-bit
// text.
void CDialog::RunUntilEnded() {
  bool isShown = false;
  while (!IsEnded()) {
    MSG message;
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) { // for the loop below
        PostQuitMessage(static_cast<int>(message.wParam));
        return;
      }
      if (!IsDialogMessageW(GetSafeHwnd(), &message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
    } else if (IsEnded()) { // by what was sent, which is served in the look
      return;
    } else if (!std::exchange(isShown, true)) {
      ShowWindow(SW_SHOWNORMAL);
    } else {
      WaitMessage();
    }
  }
}

void CDialog::EndDialog(INT_PTR answer) {
  m_answer = answer;
  m_isEnded = true;
  EnableOwner();
  ::EndDialog(GetSafeHwnd(), answer); // hides it, as the loop may be waiting for one above it
}

void CDialog::EnableOwner() {
  if (const HWND owner = std::exchange(m_disabledOwner, nullptr))
    ::EnableWindow(owner, TRUE);
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
  LRESULT result = 0;
  if (number == WM_INITDIALOG) {
    dialog->HandleMessage({number, wParam, lParam}, result, &dialog->m_initFailed);
    if (!dialog->m_initFailed && dialog->m_isModal)
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
