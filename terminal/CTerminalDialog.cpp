#include "terminal/CTerminalDialog.h"

#include "res/resource.h"
#include "util/EscapedString.h"
#include "window/CTextMeasure.h"
#include "window/ScreenScale.h"

#include <algorithm>
#include <chrono>

namespace {

constexpr UINT kInputKeyMessage = WM_APP + 1;
constexpr UINT kPollIntervalMs = 200;
constexpr DWORD kSendLockMs = 500;
constexpr std::uint32_t kChunk = 1023; // bytes

// A poll reads until nothing more is there. A device that never stops would keep it, and the window with it, for ever;
// beyond either limit the rest waits until the window has drawn and answered. The first limit is for slow channels, the
// second for fast ones: measuring and drawing what was read takes longer than reading it.
constexpr std::chrono::milliseconds kReadingTime{20};
constexpr std::size_t kReadingBytes = 3 << 19; // 1.5 MiB
constexpr UINT_PTR kMoreTimer = 2;             // timers come behind everything else that waits for the window
constexpr UINT kMoreMs = USER_TIMER_MINIMUM;

constexpr POINT kMinimumSize{200, 250}; // pixels at 96 dpi

// How the controls follow the window's edges.
constexpr struct {
  UINT id;
  DWORD flags;
} kPlacements[] = {
    {IDC_TERMINAL_CONFIGURATION, OND_PLACE_STRETCH_X | OND_PLACE_RIGHT},
    {IDC_TERMINAL_ANSWERS, OND_PLACE_STRETCH_X | OND_PLACE_STRETCH_Y | OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_TERMINAL_INPUT, OND_PLACE_STRETCH_X | OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_TERMINAL_APPEND_CR, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_TERMINAL_CLEAR, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_TERMINAL_COPY, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDOK, OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
    {IDC_TERMINAL_STATUS, OND_PLACE_STRETCH_X | OND_PLACE_RIGHT | OND_PLACE_BOTTOM},
};

// In its parent's client area.
RECT PlaceOf(HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

} // namespace

CTerminalDialog::CTerminalDialog() : CONXDialog(IDD_TERMINAL), m_splitter(CLogListBox::kMostLines) {
  SetTimerInterval(kPollIntervalMs);
  LoadSmallIcon(IDI_TERMINAL);
  m_font.CreateStockObject(SYSTEM_FIXED_FONT);
  m_input.SetKeyMessage(kInputKeyMessage);
}

bool CTerminalDialog::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&CTerminalDialog::OnTimer>(WM_TIMER),
      OnMessage<&CTerminalDialog::OnInputKey>(kInputKeyMessage),
      OnMessage<&CTerminalDialog::OnGetMinMaxInfo>(WM_GETMINMAXINFO),
      OnCommand<&CTerminalDialog::OnAppendCr>(IDC_TERMINAL_APPEND_CR),
      OnCommand<&CTerminalDialog::OnClear>(IDC_TERMINAL_CLEAR),
      OnCommand<&CTerminalDialog::OnCopy>(IDC_TERMINAL_COPY),
  };
  return Dispatch(kMap, message, result) || CONXDialog::OnWndMsg(message, result);
}

bool CTerminalDialog::OnInitDialog() {
  m_configuration.SubclassDlgItem(IDC_TERMINAL_CONFIGURATION, *this); // before its first status
  CONXDialog::OnInitDialog();
  m_answers.SubclassDlgItem(IDC_TERMINAL_ANSWERS, *this);
  m_input.SubclassDlgItem(IDC_TERMINAL_INPUT, *this);
  m_font.ApplyTo(m_answers);
  m_font.ApplyTo(m_input);
  MakeRoomForAppendCr();
  for (const auto& placement : kPlacements)
    AutoDlgCtrlPlacement(placement.id, placement.flags);
  CheckDlgButton(IDC_TERMINAL_APPEND_CR, m_appendCr);
  return true;
}

// The template's room for "Append CR" is too small where the system has a wider font for the dialog's. The input line
// gives what is missing.
void CTerminalDialog::MakeRoomForAppendCr() {
  const HWND box = GetDlgItem(IDC_TERMINAL_APPEND_CR);
  const CTextMeasure measure(*this);
  const int needed = GetSystemMetrics(SM_CXMENUCHECK) + measure.Width(GetDlgItemText(IDC_TERMINAL_APPEND_CR) + "  ");
  const RECT place = PlaceOf(box), input = PlaceOf(m_input.GetSafeHwnd());
  const int missing = needed - (place.right - place.left);
  if (missing <= 0)
    return;
  MoveWindow(box, place.left - missing, place.top, needed, place.bottom - place.top, FALSE);
  MoveWindow(m_input.GetSafeHwnd(), input.left, input.top, input.right - input.left - missing, input.bottom - input.top,
             FALSE);
}

void CTerminalDialog::UpdateDialogState() {
  UpdateCommStatus(IDC_TERMINAL_CONFIGURATION);
}

void CTerminalDialog::OnGetMinMaxInfo(const Message& message) {
  reinterpret_cast<MINMAXINFO*>(message.lParam)->ptMinTrackSize = {ScaledPixels(kMinimumSize.x),
                                                                   ScaledPixels(kMinimumSize.y)};
}

void CTerminalDialog::OnAppendCr() {
  m_appendCr = IsDlgButtonChecked(IDC_TERMINAL_APPEND_CR);
}

void CTerminalDialog::OnClear() {
  m_answers.Clear();
  m_splitter.ForgetUnfinished();
  RepairHorizontalScrollbarExtendInListBox(&m_answers);
}

void CTerminalDialog::OnCopy() {
  CopyListBoxContentToClipBoard(&m_answers);
}

// --- sending

// Enter anywhere in the window, or "Close".
void CTerminalDialog::OnOK() {
  if (HasFocus(IDOK))
    CONXDialog::OnOK();
  else if (HasFocus(IDC_TERMINAL_INPUT))
    SetDlgItemText(IDC_TERMINAL_STATUS, SendLine());
}

void CTerminalDialog::OnCancel() {
  if (HasFocus(IDC_TERMINAL_INPUT))
    m_input.SetWindowText("");
  else
    CONXDialog::OnCancel();
}

std::string CTerminalDialog::SendLine() {
  constexpr const char* kNotConnected = "Not connected to communication device!";
  if (!GetDeviceComm())
    return kNotConnected;
  const CChannelLock lock(*this, kSendLockMs);
  if (lock)
    return SendLine(lock);
  return lock.IsRefused() ? "Communication device is locked!" : kNotConnected;
}

std::string CTerminalDialog::SendLine(const CChannelLock& lock) {
  const bool appendCr = m_appendCr;
  const std::string text = m_input.GetWindowText();
  m_history.Add({text, appendCr});
  std::string problem;
  int ok = 0;
  std::string bytes = ParseString(text.c_str(), text.size(), '\0', nullptr, &problem, &ok);
  if (!ok)
    return problem;
  bytes.resize(std::min(bytes.find('\0'), bytes.size())); // the Terminal never sends a zero byte
  if (appendCr)
    bytes += '\r';
  std::uint64_t written = 0;
  if (const std::int32_t code = lock.Ask(&COndDeviceComm_0::Transmit, bytes.data(), bytes.size(), &written); code != 0)
    return "Error: " + lock.ChannelErrorText(code);
  m_input.SetWindowText("");
  return "Wrote \"" + text + (appendCr ? "\\r" : "") + "\" to device.";
}

LRESULT CTerminalDialog::OnInputKey(const Message& message) {
  const TerminalHistoryEntry* entry = nullptr;
  if (message.wParam == VK_UP)
    entry = m_history.StepBack();
  else if (message.wParam == VK_DOWN)
    entry = m_history.StepForward();
  if (!entry)
    return 0;
  m_input.SetWindowText(entry->text);
  const int end = static_cast<int>(entry->text.size());
  m_input.SetSel(end, end);
  return 1;
}

// --- receiving

bool CTerminalDialog::OnTimer(const Message& message) {
  if (message.wParam == kMoreTimer)
    KillTimer(kMoreTimer);
  else if (message.wParam != kTimerId)
    return false;
  if (GetDeviceComm())
    Poll();
  return true;
}

void CTerminalDialog::Poll() {
  Received received = Received::kNothing;
  {
    const CChannelLock lock(*this, 0);
    received = Receive(lock);
  }
  if (received != Received::kNothing)
    ShowAnswers();
  if (received == Received::kNotAll && IsWindowVisible(GetSafeHwnd()))
    SetTimer(kMoreTimer, kMoreMs);
  UpdateDialogState();
}

// The channel may serve messages meanwhile, so each round asks anew whether the lock, and with it the window, is there.
CTerminalDialog::Received CTerminalDialog::Receive(const CChannelLock& lock) {
  const auto end = std::chrono::steady_clock::now() + kReadingTime;
  char chunk[kChunk];
  std::size_t total = 0;
  while (lock) {
    if (total >= kReadingBytes || (total != 0 && std::chrono::steady_clock::now() >= end))
      return Received::kNotAll;
    std::uint64_t count = 0;
    if (lock.Ask(&COndDeviceComm_0::Receive, chunk, kChunk, &count) != 0 || count == 0)
      break;
    const std::size_t received = std::min<std::size_t>(count, kChunk);
    m_splitter.Feed({chunk, received});
    total += received;
  }
  return total != 0 ? Received::kAll : Received::kNothing;
}

// What somebody sees is the list at the end: one scroll, one repaint, one measuring, however much has come.
void CTerminalDialog::ShowAnswers() {
  const AnswerSplitter::Lines answers = m_splitter.TakeLines();
  if (answers.lines.empty())
    return;
  const CLogListBox::Batch batch(m_answers);
  if (answers.replaceLast)
    m_answers.TakeLastLine();
  m_answers.AddLines(answers.lines);
  RepairHorizontalScrollbarExtendInListBox(&m_answers);
}
