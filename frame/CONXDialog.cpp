#include "frame/CONXDialog.h"

#include "frame/COndDeviceClientApp.h"
#include "util/ChannelText.h"
#include "window/CWinApp.h"
#include "window/Clipboard.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr DWORD kStretchX = OND_PLACE_STRETCH_X | OND_PLACE_RIGHT;
constexpr DWORD kStretchY = OND_PLACE_STRETCH_Y | OND_PLACE_BOTTOM;

bool HasAll(DWORD flags, DWORD wanted) {
  return (flags & wanted) == wanted;
}

const char* OrEmpty(const char* text) {
  return text ? text : "";
}

} // namespace

// ---------------------------------------------------------------------------------------------------------------------

CONXDialog::CChannelLock::CChannelLock(CONXDialog& dialog, DWORD timeoutMs) : m_dialog(dialog), m_outer(dialog.m_lock) {
  COndDeviceComm_0* const channel = dialog.GetDeviceComm();
  if (!channel)
    return;
  m_dialog.m_lock = this; // for Release, which may come while the channel tries
  const bool granted = channel->Lock(&m_dialog, timeoutMs) == 0;
  m_refused = m_wanted && !granted;
  if (m_wanted && granted)
    m_channel = channel;
  else if (granted)
    channel->Unlock(&m_dialog);
}

CONXDialog::CChannelLock::~CChannelLock() {
  m_dialog.m_lock = m_outer;
  Release();
}

void CONXDialog::CChannelLock::Release() {
  m_wanted = false;
  if (m_channel)
    std::exchange(m_channel, nullptr)->Unlock(&m_dialog);
}

std::string CONXDialog::CChannelLock::ChannelErrorText(std::int32_t code) const {
  return m_channel ? ::ChannelErrorText(*m_channel, code) : std::to_string(code);
}

// ---------------------------------------------------------------------------------------------------------------------

CONXDialog::CONXDialog(UINT templateId) : CDialog(templateId) {}

CONXDialog::~CONXDialog() = default;

void CONXDialog::Delete(CONXDialog* dialog) {
  if (dialog) {
    dialog->m_owner = nullptr;
    dialog->m_channel = nullptr;
    dialog->DeleteWhenIdle();
  }
}

bool CONXDialog::Create(HWND parent) {
  return CreateModeless(parent);
}

void CONXDialog::SetOwnerClass(CONXDeviceClient_0* owner) {
  m_owner = owner;
}

void CONXDialog::SetDeviceComm(COndDeviceComm_0* channel) {
  const CKeepAlive keep(*this);
  const bool another = std::exchange(m_channel, channel) != channel;
  if (another && !KeepsChannel())
    ReleaseLocks();
  if (channel != m_channel)
    return; // behind an Unlock still another one was connected, or the dialog deleted
  if (channel)
    StartTimer();
  else
    StopTimer();
  UpdateDialogState();
}

void CONXDialog::LoadSmallIcon(UINT iconId) {
  m_icon.reset(static_cast<HICON>(LoadImageA(CWinApp::GetModuleInstance(), MAKEINTRESOURCEA(iconId), IMAGE_ICON,
                                             GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), 0)));
}

void CONXDialog::StartTimer() {
  m_timerRuns = m_timerRuns || SetTimer(kTimerId, m_timerInterval);
}

void CONXDialog::StopTimer() {
  if (std::exchange(m_timerRuns, false))
    KillTimer(kTimerId);
}

// --- messages

bool CONXDialog::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnMessage<&CONXDialog::OnClose>(WM_CLOSE),
      OnMessage<&CONXDialog::OnSize>(WM_SIZE),
      OnMessage<&CONXDialog::OnTimer>(WM_TIMER),
      OnMessage<&CONXDialog::OnDestroy>(WM_DESTROY),
  };
  return Dispatch(kMap, message, result) || CDialog::OnWndMsg(message, result);
}

bool CONXDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  const HWND window = GetSafeHwnd();
  Send(WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(m_icon.get()));
  SetWindowLongPtrA(window, GWL_EXSTYLE, GetWindowLongPtrA(window, GWL_EXSTYLE) | WS_EX_APPWINDOW);
  COndDeviceClientApp::Get().RegisterDialog(window);
  if (m_channel)
    StartTimer();
  UpdateDialogState();
  return true;
}

// Whoever destroys the window, the object or somebody outside.
void CONXDialog::OnDestroy() {
  COndDeviceClientApp::Get().UnregisterDialog(GetSafeHwnd());
  StopTimer();
  ReleaseLocks();
}

void CONXDialog::ReleaseLocks() {
  for (CChannelLock* lock = m_lock; lock; lock = lock->m_outer)
    lock->Release();
}

void CONXDialog::OnSize(const Message& message) {
  OnSizeDlgCtrlPlacement(LOWORD(message.lParam), HIWORD(message.lParam));
}

bool CONXDialog::OnTimer(const Message& message) {
  if (message.wParam != kTimerId)
    return false;
  UpdateDialogState();
  return true;
}

void CONXDialog::OnOK() {
  AskToHide(ONX_DLGEVENT_OK);
}
void CONXDialog::OnClose() {
  AskToHide(ONX_DLGEVENT_CLOSE);
}
void CONXDialog::OnCancel() {
  AskToHide(ONX_DLGEVENT_CANCEL);
}

// The host's answer may end the object and this window; the window is hidden only while it is there.
void CONXDialog::AskToHide(std::uint32_t event) {
  auto* const owner = static_cast<CONXDeviceClient*>(m_owner);
  if (!owner || owner->SignalDlgEvent(event) == 1)
    ShowWindow(SW_HIDE);
}

// --- status

void CONXDialog::UpdateDialogState() {}

void CONXDialog::UpdateCommStatus(UINT ctrlId) {
  if (!GetSafeHwnd())
    return;
  const std::optional<std::string> status = m_channel ? CommStatus() : "No communication device...";
  if (status)
    SetDlgItemText(static_cast<int>(ctrlId), *status);
}

// Empty while somebody else holds the channel; nothing when the channel went away meanwhile: whoever took it has shown
// what there is now.
std::optional<std::string> CONXDialog::CommStatus() {
  const CChannelLock lock(*this, 0);
  if (lock.IsRefused())
    return "";
  // The channel keeps a text only until the next call.
  const auto info = [&](std::uint32_t what) {
    return std::string(OrEmpty(lock.Ask(&COndDeviceComm_0::GetInfoString, what, 0)));
  };
  std::string status = "Channel description: " + info(OND_INFO_DESCRIPTION) + "\n";
  status += "Channel configuration: " + info(OND_INFO_CONFIGURATION) + "\n";
  status += lock.Ask(&COndDeviceComm_0::GetState) == 1 ? "State: open" : "State: closed";
  return lock ? std::optional(status) : std::nullopt;
}

// --- controls that follow the edges

void CONXDialog::AutoDlgCtrlPlacement(UINT ctrlId, DWORD flags) {
  const HWND control = GetDlgItem(static_cast<int>(ctrlId));
  if (!control)
    return;
  RECT client = GetClientRect();
  MapWindowPoints(GetSafeHwnd(), nullptr, reinterpret_cast<POINT*>(&client), 2);
  RECT place{};
  ::GetWindowRect(control, &place);
  m_placements.push_back({ctrlId, flags, place.right - place.left, place.bottom - place.top, place.left - client.left,
                          place.top - client.top, client.right - place.right, client.bottom - place.bottom});
}

RECT CONXDialog::PlaceFor(const Placement& placement, int cx, int cy) {
  int left = placement.left, width = placement.width;
  if (HasAll(placement.flags, kStretchX))
    width = cx - placement.right - left;
  else if (HasAll(placement.flags, OND_PLACE_RIGHT))
    left = cx - placement.right - width;
  int top = placement.top, height = placement.height;
  if (HasAll(placement.flags, kStretchY))
    height = cy - placement.bottom - top;
  else if (HasAll(placement.flags, OND_PLACE_BOTTOM))
    top = cy - placement.bottom - height;
  // In a window that has become too small for it a stretched control has no room at all, not less than that.
  return {left, top, left + std::max(width, 0), top + std::max(height, 0)};
}

void CONXDialog::OnSizeDlgCtrlPlacement(int cx, int cy) {
  if (!GetSafeHwnd() || m_placements.empty())
    return;
  HDWP moves = BeginDeferWindowPos(static_cast<int>(m_placements.size()));
  for (const Placement& placement : m_placements) {
    const HWND control = GetDlgItem(static_cast<int>(placement.id));
    if (control && moves) {
      const RECT place = PlaceFor(placement, cx, cy);
      moves = DeferWindowPos(moves, control, nullptr, place.left, place.top, place.right - place.left,
                             place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    }
  }
  if (!moves)
    return;
  EndDeferWindowPos(moves);
  // The stretched ones need it; one that only moved may have lost its picture to the new place of another.
  for (const Placement& placement : m_placements)
    if (const HWND control = GetDlgItem(static_cast<int>(placement.id)))
      InvalidateRect(control, nullptr, FALSE);
}

// --- lists

void CONXDialog::RepairHorizontalScrollbarExtendInListBox(CListBox* listBox) {
  listBox->SetHorizontalExtent(listBox->WidestItem());
}

void CONXDialog::CopyListBoxContentToClipBoard(CListBox* listBox) {
  std::string text;
  for (int i = 0, count = listBox->GetCount(); i < count; ++i) {
    text += listBox->GetText(i);
    text += '\n';
  }
  if (!text.empty())
    PutOnClipboard(GetSafeHwnd(), text);
}
