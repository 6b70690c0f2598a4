#include "host/windows/MainWindow.h"

#include "host/windows/Boxes.h"
#include "host/windows/SettingsCommands.h"
#include "host/windows/WindowIcon.h"
#include "host/windows/WindowPlaces.h"
#include "host/windows/resource.h"

#include <exception>
#include <utility>

namespace host {
namespace {

// A tool's window wants to be closed: wParam is the object, lParam the event (ONX_DLGEVENT_…).
constexpr UINT kToolEvent = WM_APP + 1;
constexpr UINT kRefresh = WM_APP + 2;
constexpr UINT kScriptEnded = WM_APP + 3;

constexpr const char* kName = "Device host"; // in the settings

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMs = 250;

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
  m_scripts.UseModule(module);
}

void MainWindow::DoWithoutModule(const std::string& problem) {
  m_tools.AttachProblem(m_window, problem);
  m_notes.log.Add(LogTopic::kError, "the tools are missing: " + problem);
  ShowError(m_window, "The tools are missing: " + problem + ".");
}

void MainWindow::ConnectChannel() {
  m_channel.Connect();
  ConnectTools();
}

bool MainWindow::TakeKey(MSG& message) {
  return TranslateAcceleratorA(m_window, m_accelerators, &message) != 0 || m_trace.TakeKey(message) ||
         m_log.TakeKey(message) || IsDialogMessageA(m_window, &message) != FALSE;
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
  case kScriptEnded:
    m_scripts.OnEnded();
    return true;
  case WM_DROPFILES:
    if (m_scripts.RunDropped(reinterpret_cast<HDROP>(wParam)))
      ShowRows(m_log);
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
  SetWindowIcon(m_window);
  RECT place{};
  GetWindowRect(m_window, &place);
  m_smallest = {place.right - place.left, place.bottom - place.top};
  m_layout.Attach(m_window,
                  {IDC_CHANNEL_GROUP, IDC_CHANNEL_TEXT, IDC_CHANNEL_FORMS, IDC_CHANNEL_DESCRIPTION,
                   IDC_CHANNEL_CONFIGURATION, IDC_CHANNEL_STATE, IDC_USE_HOLDER, IDC_USE_TRAFFIC, IDC_USE_CALLS,
                   IDC_TOOLS_GROUP, IDC_TOOLS_PROBLEM},
                  {IDM_CONNECT, IDM_RESET_COUNTERS});
  if (!PutBack(m_notes.settings.Get(), kName, m_window))
    PlaceMainWindow(m_window);
  m_channel.Attach(m_window);
  m_use.Attach(m_window);
  m_scripts.Attach(m_window, kScriptEnded);
  ShowSettingsCommands(m_window, m_notes.settings);
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
    ToggleRows(m_trace);
    return true;
  case IDM_LOG:
    ToggleRows(m_log);
    return true;
  case IDM_RESET_COUNTERS:
    m_use.ResetCounters();
    return true;
  case IDM_OPEN_SETTINGS:
    OpenSettingsFolder(m_window, m_notes.settings);
    return true;
  case IDM_FORGET:
    ForgetEverything();
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
    return OnOtherCommand(command);
  }
}

// Of scripts and tools.
bool MainWindow::OnOtherCommand(UINT command) {
  bool started = false;
  const bool isScripts = m_scripts.OnCommand(command, started);
  if (started)
    ShowRows(m_log);
  return isScripts || m_tools.OnCommand(command);
}

// Enter does what the focus is on. There is no default button, which the tools' buttons would press.
void MainWindow::OnEnter() {
  const HWND focus = GetFocus();
  const HWND text = GetDlgItem(m_window, IDC_CHANNEL_TEXT);
  if (focus == text || IsChild(text, focus))
    ConnectChannel();
  else if (GetParent(focus) == m_window)
    OnCommand(static_cast<UINT>(GetDlgCtrlID(focus)), 0);
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
  m_tools.Connect(m_channel.IsConnected());
  m_scripts.Connect(m_channel.IsConnected());
}

void MainWindow::Refresh() {
  const std::string failure = m_channel.TakeFailure();
  m_channel.Refresh();
  m_use.Refresh();
  m_tools.Refresh();
  m_scripts.Refresh();
  m_notes.log.Flush();
  const HMENU menu = GetMenu(m_window);
  CheckMenuItem(menu, IDM_TRACE, m_trace.IsShown() ? MF_CHECKED : MF_UNCHECKED);
  CheckMenuItem(menu, IDM_LOG, m_log.IsShown() ? MF_CHECKED : MF_UNCHECKED);
  if (!failure.empty()) {
    ConnectTools();
    ShowChannelError(m_window, failure);
  }
  RunFirstScript();
}

void MainWindow::RunFirstScript() {
  if (m_firstScript.empty() || m_slot.IsConnecting())
    return;
  if (m_scripts.Run(std::exchange(m_firstScript, {})))
    ShowRows(m_log);
}

void MainWindow::ShowRows(RowsWindow& window) {
  if (window.Show(m_window) && !PutBack(m_notes.settings.Get(), window.Name(), window.Handle()))
    PlaceBeside(m_window, window.Handle());
  Refresh();
}

void MainWindow::ToggleRows(RowsWindow& window) {
  if (window.IsShown()) {
    window.Hide();
    Refresh();
  } else {
    ShowRows(window);
    SetActiveWindow(window.Handle());
  }
}

void MainWindow::ForgetEverything() {
  if (!AskToForget(m_window, m_notes))
    return;
  m_channel.ShowHistory();
  m_scripts.ShowRecent();
  ShowSettingsCommands(m_window, m_notes.settings);
}

void MainWindow::RememberPlaces() {
  if (!m_window)
    return;
  m_notes.settings.Change([this](Settings& settings) {
    RememberPlace(settings, kName, m_window);
    for (const RowsWindow* const window : {&m_trace, &m_log})
      RememberPlace(settings, window->Name(), window->Handle());
    m_tools.RememberPlaces(settings);
  });
}

void MainWindow::Close() {
  RememberPlaces();
  m_scripts.End();
  m_tools.End();
  m_slot.Replace(nullptr); // nobody is left to use it
  m_trace.End();
  m_log.End();
  if (m_window)
    DestroyWindow(m_window);
}

} // namespace host
