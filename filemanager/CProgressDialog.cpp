#include "filemanager/CProgressDialog.h"

#include "filemanager/CopyTexts.h"
#include "res/resource.h"
#include "window/CTextMeasure.h"

#include <utility>

namespace {

// wParam: percentage of the files that are done, lParam: index of the file that begins
constexpr UINT kFileStartedMessage = WM_APP;
// wParam: steps done of the file that is being sent, of 100
constexpr UINT kStepsDoneMessage = WM_APP + 1;

constexpr SIZE_T kStackSize = 16384;

// Between one showing of news and the next.
constexpr UINT_PTR kPauseTimer = 1;
constexpr UINT kPauseMs = 20;

} // namespace

CProgressDialog::CProgressDialog(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files, bool continueOnError)
    : CDialog(IDD_PROGRESS), m_loop(channel, std::move(files), continueOnError) {}

bool CProgressDialog::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&CProgressDialog::OnFileStartedMessage>(kFileStartedMessage),
      OnMessage<&CProgressDialog::OnStepsDoneMessage>(kStepsDoneMessage),
      OnMessage<&CProgressDialog::OnPauseEnded>(WM_TIMER),
      OnMessage<&CProgressDialog::OnDestroy>(WM_DESTROY),
  };
  return Dispatch(kMap, message, result) || CDialog::OnWndMsg(message, result);
}

bool CProgressDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  m_currentFile.SubclassDlgItem(IDC_PROGRESS_FILE, *this);
  m_totalBar.SubclassDlgItem(IDC_PROGRESS_TOTAL_BAR, *this);
  m_fileBar.SubclassDlgItem(IDC_PROGRESS_FILE_BAR, *this);
  m_totalBar.SetRange(0, 100);
  m_fileBar.SetRange(0, 100);
  m_hasRun = m_worker.Start(GetSafeHwnd(), WM_CLOSE, kStackSize, Work, this);
  if (!m_hasRun)
    EndDialog(IDCANCEL);
  return true;
}

// --- the worker's thread

std::int32_t CProgressDialog::Work(void* dialog) {
  auto& self = *static_cast<CProgressDialog*>(dialog);
  return self.m_loop.Run(self);
}

void CProgressDialog::OnFileStarted(std::size_t index) noexcept {
  m_index = index;
  if (!m_fileStartedPosted.exchange(true))
    m_worker.Post(kFileStartedMessage, PercentDone(index), static_cast<LPARAM>(index));
}

void CProgressDialog::OnStepsDone(std::uint32_t steps) noexcept {
  m_steps = steps;
  if (!m_stepsDonePosted.exchange(true))
    m_worker.Post(kStepsDoneMessage, steps, 0);
}

// --- the window's thread

void CProgressDialog::OnFileStartedMessage() {
  ShowFile();
  SetTimer(kPauseTimer, kPauseMs);
}

void CProgressDialog::OnStepsDoneMessage() {
  ShowSteps();
  SetTimer(kPauseTimer, kPauseMs);
}

// What comes from now on is posted again; what came meanwhile was not.
void CProgressDialog::OnPauseEnded() {
  KillTimer(kPauseTimer);
  m_fileStartedPosted = false;
  m_stepsDonePosted = false;
  ShowFile();
  ShowSteps();
}

void CProgressDialog::ShowFile() {
  const std::size_t index = m_index;
  if (index == m_shownIndex)
    return;
  m_shownIndex = index;
  SetDlgItemText(IDC_PROGRESS_TOTAL, CopiedSoFarText(index, GetFiles().size()));
  const CTextMeasure measure(m_currentFile);
  const int room = m_currentFile.GetClientRect().right;
  m_currentFile.SetWindowText(
      CurrentFileText(GetFiles()[index].path, [&](const std::string& text) { return measure.Width(text) <= room; }));
  m_totalBar.SetPos(static_cast<int>(PercentDone(index)));
}

void CProgressDialog::ShowSteps() {
  m_fileBar.SetPos(static_cast<int>(m_steps));
}

void CProgressDialog::OnCancel() {
  EndWorker();
  EndDialog(IDCANCEL);
}

bool CProgressDialog::OnDestroy() {
  EndWorker();
  return false;
}

void CProgressDialog::EndWorker() {
  m_worker.End([this] { m_loop.Abort(); });
}
