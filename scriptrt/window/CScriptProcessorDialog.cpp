#include "scriptrt/window/CScriptProcessorDialog.h"

#include "platform/Platform.h"
#include "res/resource.h"
#include "scriptrt/window/CONXScriptProcessor.h"
#include "util/ChannelText.h"
#include "util/LastSeparator.h"
#include "window/CFileDialog.h"
#include "window/FormatText.h"
#include "window/ScreenScale.h"

#include <shellapi.h>

#include <algorithm>

namespace {

constexpr int kMinimumHeight = 250; // pixels at 96 dpi
constexpr const char* kFilter = "Script files (*.dcs)|*.dcs|All files (*.*)|*.*||";

// Takes output that the worker holds back, while a script runs.
constexpr UINT_PTR kOutputTimer = 2;
constexpr UINT kOutputTimerMs = 50;
// Tells how a script ended once the window can show it.
constexpr UINT_PTR kReportTimer = 3;
constexpr UINT kReportTimerMs = 100;

// How the controls follow the window's edges.
constexpr struct {
  UINT id;
  DWORD flags;
} kPlacements[] = {
    {IDC_SCRIPT_CONFIGURATION, OND_PLACE_STRETCH_X | OND_PLACE_RIGHT},
    {IDC_SCRIPT_LOG, OND_PLACE_STRETCH_X | OND_PLACE_STRETCH_Y | OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_SCRIPT_PATH_LABEL, OND_PLACE_BOTTOM},
    {IDC_SCRIPT_PATH, OND_PLACE_STRETCH_X | OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_SCRIPT_BROWSE, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDOK, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_SCRIPT_COPY, OND_PLACE_BOTTOM},
    {IDC_SCRIPT_NEW, OND_PLACE_BOTTOM},
    {IDC_SCRIPT_EDIT, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_SCRIPT_EXECUTE, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
};

CFileDialog ScriptFileDialog(const char* title) {
  CFileDialog dialog;
  dialog.defaultExtension = "*.dcs";
  dialog.filter = kFilter;
  dialog.title = title;
  return dialog;
}

// Opens a file as one of a class. The shell's answer: 32 or less is an error.
UINT_PTR OpenAs(const char* fileClass, HWND window, const std::string& path) {
  const std::string folder = path.substr(0, LastSeparator(path));
  SHELLEXECUTEINFOA request{};
  request.cbSize = sizeof(request);
  request.fMask = SEE_MASK_CLASSNAME | SEE_MASK_FLAG_NO_UI;
  request.hwnd = window;
  request.lpVerb = "open";
  request.lpFile = path.c_str();
  request.lpDirectory = folder.c_str();
  request.lpClass = fileClass;
  request.nShow = SW_SHOWNORMAL;
  ShellExecuteExA(&request);
  return reinterpret_cast<UINT_PTR>(request.hInstApp);
}

// Opens a file in the program for text files. Wine's shell does not take an extension for a class, so the second try
// names the class that text files have everywhere.
UINT_PTR OpenInEditor(HWND window, const std::string& path) {
  const UINT_PTR answer = OpenAs(".TXT", window, path);
  return answer > 32 || !IsWindow(window) ? answer : std::max(answer, OpenAs("txtfile", window, path));
}

} // namespace

CScriptProcessorDialog::CScriptProcessorDialog() : CONXDialog(IDD_SCRIPT_PROCESSOR) {
  LoadSmallIcon(IDI_SCRIPT_PROCESSOR);
  m_font.CreateStockObject(SYSTEM_FIXED_FONT);
}

CONXScriptProcessor* CScriptProcessorDialog::GetProcessor() const {
  return static_cast<CONXScriptProcessor*>(GetOwnerClass());
}

bool CScriptProcessorDialog::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnCommand<&CScriptProcessorDialog::OnBrowse>(IDC_SCRIPT_BROWSE),
      OnCommand<&CScriptProcessorDialog::OnNewScript>(IDC_SCRIPT_NEW),
      OnCommand<&CScriptProcessorDialog::OnEditScript>(IDC_SCRIPT_EDIT),
      OnCommand<&CScriptProcessorDialog::OnCopy>(IDC_SCRIPT_COPY),
      OnCommand<&CScriptProcessorDialog::OnExecuteOrStop>(IDC_SCRIPT_EXECUTE),
      OnMessage<&CScriptProcessorDialog::OnScriptOutput>(kScriptOutputMessage),
      OnMessage<&CScriptProcessorDialog::OnScriptEnded>(kScriptEndedMessage),
      OnMessage<&CScriptProcessorDialog::OnTimer>(WM_TIMER),
      OnMessage<&CScriptProcessorDialog::OnGetMinMaxInfo>(WM_GETMINMAXINFO),
      OnMessage<&CScriptProcessorDialog::OnDestroy>(WM_DESTROY),
  };
  return Dispatch(kMap, message, result) || CONXDialog::OnWndMsg(message, result);
}

bool CScriptProcessorDialog::OnInitDialog() {
  CONXDialog::OnInitDialog();
  m_log.SubclassDlgItem(IDC_SCRIPT_LOG, *this);
  m_font.ApplyTo(m_log);
  const RECT window = GetWindowRect();
  m_initialWidth = window.right - window.left;
  for (const auto& placement : kPlacements)
    AutoDlgCtrlPlacement(placement.id, placement.flags);
  return true;
}

void CScriptProcessorDialog::OnGetMinMaxInfo(const Message& message) {
  reinterpret_cast<MINMAXINFO*>(message.lParam)->ptMinTrackSize = {m_initialWidth, ScaledPixels(kMinimumHeight)};
}

void CScriptProcessorDialog::UpdateDialogState() {
  UpdateCommStatus(IDC_SCRIPT_CONFIGURATION);
  SetDlgItemText(IDC_SCRIPT_PATH, m_path);
  EnableDlgItem(IDC_SCRIPT_EDIT, !m_path.empty());
  EnableDlgItem(IDC_SCRIPT_EXECUTE, !m_path.empty());
  SetDlgItemText(IDC_SCRIPT_EXECUTE, m_running ? "Stop script" : "Execute script");
}

// --- the script file

void CScriptProcessorDialog::SetPath(const std::string& path) {
  m_path = path;
  UpdateDialogState();
}

void CScriptProcessorDialog::OnBrowse() {
  CFileDialog dialog = ScriptFileDialog("Open a script file");
  dialog.initialName = m_path;
  if (const std::string path = dialog.Open(GetSafeHwnd()); !path.empty())
    SetPath(path);
}

void CScriptProcessorDialog::OnNewScript() {
  CFileDialog dialog = ScriptFileDialog("New script file");
  dialog.overwritePrompt = true;
  const std::string path = dialog.Save(GetSafeHwnd());
  if (path.empty() || !GetSafeHwnd())
    return;
  if (!platform::File::Open(path, platform::File::Mode::kCreate)) {
    ShowError("Cannot create script file!");
    return;
  }
  SetPath(path);
  OnEditScript();
}

void CScriptProcessorDialog::OnEditScript() {
  if (m_path.empty()) {
    ShowError("No file name present");
    return;
  }
  if (const UINT_PTR answer = OpenInEditor(GetSafeHwnd(), m_path); answer <= 32)
    ShowError(FormatText("ShellExecute error %u", static_cast<unsigned>(answer)));
}

// --- a run

void CScriptProcessorDialog::OnExecuteOrStop() {
  if (m_running) {
    if (CONXScriptProcessor* const processor = GetProcessor())
      processor->StopScript();
    UpdateDialogState();
    return;
  }
  m_log.Clear();
  RepairHorizontalScrollbarExtendInListBox(&m_log);
  if (const char* const problem = StartScript())
    ShowError(problem);
  UpdateDialogState();
}

// What keeps the script from starting; null when it has started, and when there is no object that could run it.
const char* CScriptProcessorDialog::StartScript() {
  CONXScriptProcessor* const processor = GetProcessor();
  if (!processor)
    return nullptr;
  if (!GetDeviceComm())
    return "No communication device available!";
  processor->SharedSession()->Prepare(); // here and not on the worker: a stop from now on counts
  if (!m_worker.Start(processor->SharedSession(), m_path, GetSafeHwnd()))
    return "Unable to create script thread";
  m_running = true;
  SetTimer(kOutputTimer, kOutputTimerMs);
  return nullptr;
}

void CScriptProcessorDialog::OnScriptEnded(const Message& message) {
  m_worker.Join();
  KillTimer(kOutputTimer);
  m_result = static_cast<std::int32_t>(message.wParam);
  ReportEnd();
}

// Behind an open file dialog this waits: a box would free the window when it closes, with the dialog still open.
void CScriptProcessorDialog::ReportEnd() {
  KillTimer(kReportTimer);
  if (!IsWindowEnabled(GetSafeHwnd())) {
    SetTimer(kReportTimer, kReportTimerMs);
    return;
  }
  UpdateDialogState();
  if (m_result != EONX_ERR_NONE) {
    COndDeviceComm_0* const channel = GetDeviceComm();
    ShowError("Error executing script: " + (channel ? ChannelErrorText(*channel, m_result) : std::to_string(m_result)));
  }
  m_running = false;
  UpdateDialogState();
}

// Ends the host's own run of this object too. What is served meanwhile may delete the object.
bool CScriptProcessorDialog::OnDestroy() {
  CONXScriptProcessor* const processor = GetProcessor();
  const std::shared_ptr<CSharedSession> session = processor ? processor->SharedSession() : nullptr;
  if (session)
    session->Abandon();
  m_worker.Abandon();
  if (session)
    session->WaitForOthers();
  m_running = false;
  return false;
}

// --- the log

void CScriptProcessorDialog::OnScriptOutput(const Message& message) {
  AppendToLog(reinterpret_cast<const char*>(message.wParam));
}

bool CScriptProcessorDialog::OnTimer(const Message& message) {
  if (message.wParam == kReportTimer) {
    ReportEnd();
    return true;
  }
  if (message.wParam != kOutputTimer)
    return false;
  if (const std::string text = m_worker.TakeOutput(); !text.empty())
    AppendToLog(text.c_str());
  return true;
}

void CScriptProcessorDialog::AppendToLog(const char* text) {
  const CLogListBox::Batch batch(m_log);
  m_log.Append(text);
  RepairHorizontalScrollbarExtendInListBox(&m_log);
}

void CScriptProcessorDialog::OnCopy() {
  CopyListBoxContentToClipBoard(&m_log);
}
