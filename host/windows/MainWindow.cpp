#include "host/windows/MainWindow.h"

#include "host/windows/Boxes.h"
#include "host/windows/WindowPlaces.h"
#include "host/windows/resource.h"

#include <exception>

namespace host {
namespace {

// A tool's window wants to be closed: wParam is the object, lParam the event (ONX_DLGEVENT_…).
constexpr UINT kToolEvent = WM_APP + 1;
constexpr UINT kRefresh = WM_APP + 2;

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMs = 250;

void SetIcon(HWND window, WPARAM which, int width, int height) {
  // Shared: the system keeps it and frees it.
  const HANDLE icon =
      LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDI_HOST), IMAGE_ICON, width, height, LR_SHARED);
  SendMessageA(window, WM_SETICON, which, reinterpret_cast<LPARAM>(icon));
}

} // namespace

MainWindow::~MainWindow() {
  Close();
}

bool MainWindow::Create() {
  const HINSTANCE program = GetModuleHandleA(nullptr);
  m_accelerators = LoadAcceleratorsA(program, MAKEINTRESOURCEA(IDR_ACCELERATORS));
  CreateDialogParamA(program, MAKEINTRESOURCEA(IDD_MAIN), nullptr, DialogProc, reinterpret_cast<LPARAM>(this));
  if (!m_window)
    return false;
  ShowWindow(m_window, SW_SHOW);
  return true;
}

void MainWindow::UseModule(const Module& module) {
  m_tools.Attach(m_window, module, kToolEvent);
}

void MainWindow::DoWithoutModule(const std::string& problem) {
  m_tools.AttachProblem(m_window, problem);
  ShowError(m_window, "The tools are missing: " + problem + ".");
}

void MainWindow::ConnectChannel() {
  m_channel.Connect();
  ConnectTools();
}

bool MainWindow::TakeKey(MSG& message) const {
  return TranslateAcceleratorA(m_window, m_accelerators, &message) != 0 || m_trace.TakeKey(message) ||
         IsDialogMessageA(m_window, &message) != FALSE;
}

// --- messages

INT_PTR CALLBACK MainWindow::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lParam);
    reinterpret_cast<MainWindow*>(lParam)->m_window = window;
  }
  auto* const self = reinterpret_cast<MainWindow*>(GetWindowLongPtrA(window, DWLP_USER));
  if (!self)
    return FALSE;
  try {
    self->m_answer = 0;
    if (!self->OnMessage(message, wParam, lParam))
      return FALSE;
    SetWindowLongPtrA(window, DWLP_MSGRESULT, self->m_answer);
    return TRUE;
  } catch (const std::exception& error) { // memory ran out, say
    ShowError(window, error.what());
    return TRUE;
  }
}

bool MainWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_INITDIALOG:
    OnInit();
    return true;
  case WM_COMMAND:
    return OnCommand(LOWORD(wParam), HIWORD(wParam));
  case WM_TIMER:
  case WM_INITMENUPOPUP:
  case kRefresh:
    Refresh();
    return message != WM_INITMENUPOPUP;
  case kToolEvent:
    // The window hides when the answer is here; what that changes is shown afterwards.
    PostMessageA(m_window, kRefresh, 0, 0);
    m_answer = 1;
    return true;
  case WM_SIZE:
    m_layout.Apply();
    m_tools.Layout();
    // Group boxes do not erase where their edges were.
    RedrawWindow(m_window, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_ALLCHILDREN);
    return true;
  case WM_GETMINMAXINFO:
    LimitSize(*reinterpret_cast<MINMAXINFO*>(lParam));
    return true;
  case WM_ENDSESSION:
    if (wParam != 0)
      Close();
    return true;
  case WM_CLOSE:
    Close();
    return true;
  case WM_DESTROY:
    m_window = nullptr;
    PostQuitMessage(0);
    return true;
  default:
    return false;
  }
}

void MainWindow::OnInit() {
  SetIcon(m_window, ICON_SMALL, GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON));
  SetIcon(m_window, ICON_BIG, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
  RECT place{};
  GetWindowRect(m_window, &place);
  m_smallest = {place.right - place.left, place.bottom - place.top};
  PlaceMainWindow(m_window);
  m_layout.Attach(m_window,
                  {IDC_CHANNEL_GROUP, IDC_CHANNEL_TEXT, IDC_CHANNEL_FORMS, IDC_CHANNEL_DESCRIPTION,
                   IDC_CHANNEL_CONFIGURATION, IDC_CHANNEL_STATE, IDC_TOOLS_GROUP, IDC_TOOLS_PROBLEM},
                  {IDM_CONNECT});
  m_channel.Attach(m_window);
  SetTimer(m_window, kRefreshTimer, kRefreshMs, nullptr);
}

bool MainWindow::OnCommand(UINT command, UINT notification) {
  if (notification > 1) // not a button, a menu item or an accelerator
    return false;
  switch (command) {
  case IDM_CONNECT:
    if (m_channel.IsConnected())
      DisconnectChannel();
    else
      ConnectChannel();
    return true;
  case IDM_TRACE:
    m_trace.Toggle(m_window);
    Refresh();
    return true;
  case IDM_EXIT:
    Close();
    return true;
  case IDM_ABOUT:
    ShowNote(m_window, "About ondhost", "ondhost " OND_VERSION "\n\nSample host of OndDeviceClient.dll.");
    return true;
  case IDOK:
    OnEnter();
    return true;
  default:
    return m_tools.OnCommand(command);
  }
}

// Enter does what the focus is on. There is no default button, which the tools' buttons would press.
void MainWindow::OnEnter() {
  const HWND focus = GetFocus();
  const HWND text = GetDlgItem(m_window, IDC_CHANNEL_TEXT);
  if (focus == text || IsChild(text, focus))
    ConnectChannel();
  else
    m_tools.OnCommand(static_cast<UINT>(GetDlgCtrlID(focus)));
}

// Only the width has a use for more room.
void MainWindow::LimitSize(MINMAXINFO& limits) const {
  if (m_smallest.cx == 0)
    return;
  limits.ptMinTrackSize = {m_smallest.cx, m_smallest.cy};
  limits.ptMaxTrackSize.y = m_smallest.cy;
}

void MainWindow::DisconnectChannel() {
  m_channel.Disconnect();
  ConnectTools();
}

void MainWindow::ConnectTools() {
  m_tools.Connect(m_channel.IsConnected() ? &m_slot : nullptr);
}

void MainWindow::Refresh() {
  const std::string failure = m_channel.TakeFailure();
  m_channel.Refresh();
  m_tools.Refresh();
  CheckMenuItem(GetMenu(m_window), IDM_TRACE, m_trace.IsShown() ? MF_CHECKED : MF_UNCHECKED);
  if (failure.empty())
    return;
  ConnectTools();
  ShowChannelError(m_window, failure);
}

void MainWindow::Close() {
  m_tools.End();
  m_slot.Replace(nullptr); // nobody is left to use it
  m_trace.End();
  if (m_window)
    DestroyWindow(m_window);
}

} // namespace host
