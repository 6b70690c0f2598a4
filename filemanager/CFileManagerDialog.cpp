#include "filemanager/CFileManagerDialog.h"

#include "filemanager/CProgressDialog.h"
#include "filemanager/CopyTexts.h"
#include "res/resource.h"
#include "util/ChannelText.h"
#include "window/FormatText.h"

#include <utility>

namespace {

constexpr DWORD kActionTimeoutMs = 500;
constexpr const char* kLocked = "Communication device is locked";
constexpr const char* kFormatQuestion = "You have selected to format the device.\n"
                                        "This will destroy all data stored on the device.\n\n"
                                        "Yes: Format all blocks on the device\n"
                                        "No: Format only the blocks that are marked as used\n"
                                        "Cancel: Have mercy on me!";

// Commands that are no action on files.
bool MayComeAnyTime(const Message& command) {
  const WORD id = LOWORD(command.wParam);
  return id == IDOK || id == IDCANCEL || id == IDC_FM_CONTINUE_ON_ERROR;
}

} // namespace

CFileManagerDialog::CFileManagerDialog() : CONXDialog(IDD_FILE_MANAGER) {
  LoadSmallIcon(IDI_FILE_MANAGER);
}

bool CFileManagerDialog::OnWndMsg(const Message& message, LRESULT& result) {
  // Behind an open box or a copy only programs can press buttons; a second action must not come into the first.
  if (message.number == WM_COMMAND && !MayComeAnyTime(message) && !IsWindowEnabled(GetSafeHwnd()))
    return true;
  static constexpr MessageEntry kMap[] = {
      OnCommand<&CFileManagerDialog::OnAddFiles>(IDC_FM_ADD_FILES),
      OnCommand<&CFileManagerDialog::OnClear>(IDC_FM_CLEAR),
      OnCommand<&CFileManagerDialog::OnLoadJob>(IDC_FM_LOAD_JOB),
      OnCommand<&CFileManagerDialog::OnSaveJob>(IDC_FM_SAVE_JOB),
      OnCommand<&CFileManagerDialog::OnCopySelected>(IDC_FM_COPY_SELECTED),
      OnCommand<&CFileManagerDialog::OnCopyAll>(IDC_FM_COPY_ALL),
      OnCommand<&CFileManagerDialog::OnRefresh>(IDC_FM_REFRESH),
      OnCommand<&CFileManagerDialog::OnFormat>(IDC_FM_FORMAT),
      OnCommand<&CFileManagerDialog::OnDeleteFiles>(IDC_FM_DELETE_FILES),
      OnCommand<&CFileManagerDialog::OnContinueOnError>(IDC_FM_CONTINUE_ON_ERROR),
      OnNotify<&CFileManagerDialog::OnLocalRowLeaves>(IDC_FM_LOCAL_LIST, static_cast<UINT>(LVN_DELETEITEM)),
      OnMessage<&CFileManagerDialog::OnRowsLeft>(kRowsLeftMessage),
      OnMessage<&CFileManagerDialog::OnDropFiles>(WM_DROPFILES),
      OnMessage<&CFileManagerDialog::OnShowWindow>(WM_SHOWWINDOW),
  };
  return Dispatch(kMap, message, result) || CONXDialog::OnWndMsg(message, result);
}

bool CFileManagerDialog::OnInitDialog() {
  m_status.SubclassDlgItem(IDC_FM_CONFIGURATION, *this); // before its text is set
  CONXDialog::OnInitDialog();
  m_localList.SubclassDlgItem(IDC_FM_LOCAL_LIST, *this);
  m_deviceList.SubclassDlgItem(IDC_FM_DEVICE_LIST, *this);
  CheckDlgButton(IDC_FM_CONTINUE_ON_ERROR, m_continueOnError);
  m_localList.InitColumns();
  RefreshDeviceDirectory();
  return true;
}

void CFileManagerDialog::UpdateDialogState() {
  if (GetSafeHwnd()) {
    UpdateCommStatus(IDC_FM_CONFIGURATION);
    EnableButtons();
  }
}

void CFileManagerDialog::EnableButtons() {
  COndDeviceComm_0* const channel = GetDeviceComm();
  const bool connected = channel && channel->GetState() == 1;
  if (channel != GetDeviceComm())
    return; // whoever connected another one meanwhile has done this for it
  const bool anyLocal = m_localList.GetItemCount() > 0;
  const bool localSelected = m_localList.GetSelectedCount() > 0;
  const bool deviceSelected = m_deviceList.GetSelectedCount() > 0;
  EnableDlgItem(IDC_FM_SAVE_JOB, anyLocal);
  EnableDlgItem(IDC_FM_COPY_SELECTED, connected && localSelected);
  EnableDlgItem(IDC_FM_COPY_ALL, connected && anyLocal);
  EnableDlgItem(IDC_FM_REFRESH, connected);
  EnableDlgItem(IDC_FM_FORMAT, connected);
  EnableDlgItem(IDC_FM_DELETE_FILES, connected && deviceSelected);
}

void CFileManagerDialog::OnContinueOnError() {
  m_continueOnError = IsDlgButtonChecked(IDC_FM_CONTINUE_ON_ERROR);
}

// However the window is hidden, a copy ends first. A parent that is minimised hides it too, but only for a while.
bool CFileManagerDialog::OnShowWindow(const Message& message) {
  const bool hides = message.wParam == FALSE && message.lParam == 0;
  if (hides && m_progress)
    m_progress->Abort();
  return false;
}

// Whether an action has got the channel. Tells the user when somebody else has it.
bool CFileManagerDialog::IsReserved(const CChannelLock& lock) {
  if (lock.IsRefused())
    ShowError(kLocked);
  return static_cast<bool>(lock);
}

// --- the device's directory

void CFileManagerDialog::RefreshDeviceDirectory() {
  if (!GetSafeHwnd())
    return;
  m_deviceList.InitColumns();
  if (!GetDeviceComm())
    return;
  const CChannelLock lock(*this, kActionTimeoutMs);
  if (!IsReserved(lock))
    return;
  const std::string summary = DirectorySummary(lock);
  if (!lock)
    return;
  SetDlgItemText(IDC_FM_SUMMARY, summary);
  m_deviceList.Fill(lock);
}

std::string CFileManagerDialog::DirectorySummary(const CChannelLock& lock) {
  if (const std::int32_t code = lock.Ask(&COndDeviceComm_0::ReadDirectory); code != 0)
    return "Could not read device directory:\n" + lock.ChannelErrorText(code);
  TDEVDIRINFO info{};
  lock.Ask(&COndDeviceComm_0::GetDirectoryInfo, &info);
  return FormatText("%u bytes in %u files\nrequire %u bytes on disk\n%llu bytes free", info.bytesInFiles,
                    info.fileCount, info.bytesOnDevice, 1ULL * info.freeFactorB * info.freeFactorA);
}

// --- deleting

// The files are those that were selected when the user was asked, on the device that they were on.
void CFileManagerDialog::OnDeleteFiles() {
  const auto count = static_cast<unsigned>(m_deviceList.GetSelectedCount());
  if (count == 0) {
    ShowError("No files marked to delete!");
    return;
  }
  const std::vector<std::uint8_t> ids = m_deviceList.SelectedIds();
  COndDeviceComm_0* const channel = GetDeviceComm();
  const int answer =
      MessageBox(FormatText("Deleting %u file%s from device, are you sure?", count, count == 1 ? "" : "s"), "Warning",
                 MB_YESNO | MB_ICONQUESTION);
  if (answer != IDYES || !channel || channel != GetDeviceComm())
    return;
  const CChannelLock lock(*this, kActionTimeoutMs);
  if (!IsReserved(lock))
    return;
  DeleteDeviceFiles(lock, ids);
  if (lock)
    RefreshDeviceDirectory();
}

void CFileManagerDialog::DeleteDeviceFiles(const CChannelLock& lock, const std::vector<std::uint8_t>& ids) {
  for (const std::uint8_t id : ids) {
    if (const std::int32_t code = lock.Ask(&COndDeviceComm_0::DeleteDeviceFile, id); code != 0) {
      ShowError(FormatText("Could not delete file with ID %u: %s", id, lock.ChannelErrorText(code).c_str()));
      return;
    }
  }
}

// --- formatting

void CFileManagerDialog::OnFormat() {
  COndDeviceComm_0* const channel = GetDeviceComm();
  if (!channel)
    return;
  std::int32_t code = 0;
  {
    const CChannelLock lock(*this, kActionTimeoutMs);
    if (IsReserved(lock))
      code = AskAndFormat(lock);
  }
  if (code != 0 && channel == GetDeviceComm())
    ShowError("Could not format device: " + ChannelErrorText(*channel, code));
}

// The channel's result; 0 when the user does not want to, or the channel went away behind the question or meanwhile.
std::int32_t CFileManagerDialog::AskAndFormat(const CChannelLock& lock) {
  const int answer = MessageBox(kFormatQuestion, "WARNING", MB_YESNOCANCEL | MB_ICONEXCLAMATION | MB_DEFBUTTON3);
  if (answer != IDYES && answer != IDNO)
    return 0;
  const std::int32_t code = lock.Ask(&COndDeviceComm_0::FormatDevice, answer == IDNO ? 1 : 0);
  if (!lock)
    return 0;
  RefreshDeviceDirectory();
  return code;
}

// --- copying

void CFileManagerDialog::OnCopySelected() {
  if (m_localList.GetSelectedCount() == 0)
    ShowError("No files marked to copy!");
  else
    Copy(&CFileManagerDialog::SelectedEntries);
}

void CFileManagerDialog::OnCopyAll() {
  if (m_localList.GetItemCount() == 0)
    ShowError("No files present to copy!");
  else
    Copy(&CFileManagerDialog::AllEntries);
}

void CFileManagerDialog::Copy(std::vector<TFILEENTRY> (CFileManagerDialog::*gather)() const) {
  if (!GetDeviceComm())
    return;
  const CChannelLock lock(*this, kActionTimeoutMs);
  if (!IsReserved(lock))
    return;
  CopyFilesToDevice((this->*gather)());
  RefreshDeviceDirectory();
}

void CFileManagerDialog::CopyFilesToDevice(std::vector<TFILEENTRY> files) {
  COndDeviceComm_0* const channel = GetDeviceComm();
  const std::string report = CopyAndReport(channel, std::move(files));
  if (channel != GetDeviceComm())
    ReleaseLocks(); // the host took the channel back during the copy, which alone still used it
  if (!report.empty())
    ShowError(report);
}

// What is to be told. The channel stays the copy's until that is known.
std::string CFileManagerDialog::CopyAndReport(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files) {
  CProgressDialog progress(channel, std::move(files), m_continueOnError);
  struct Mark {
    CProgressDialog*& place;
    ~Mark() { place = nullptr; }
  } const mark{m_progress = &progress};
  progress.DoModal(GetSafeHwnd());
  if (!progress.HasRun())
    return "Unable to start copying";
  return CopyErrorsText(progress.GetErrors(), progress.GetFiles(), [&](std::int32_t code) {
    return GetSafeHwnd() ? ChannelErrorText(*channel, code) : std::to_string(code);
  });
}
