#include "host/windows/ChannelPanel.h"

#include "host/trace/TracingChannel.h"
#include "host/windows/Boxes.h"
#include "host/windows/ControlText.h"
#include "host/windows/resource.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

// The pointer shows that the program is busy: a device may take its time to answer.
class WaitCursor {
public:
  WaitCursor() : m_before(SetCursor(LoadCursorA(nullptr, IDC_WAIT))) {}
  ~WaitCursor() { SetCursor(m_before); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

private:
  HCURSOR m_before;
};

} // namespace

void ChannelPanel::Attach(HWND window) {
  m_window = window;
  ShowHistory();
  SetControlText(window, IDC_CHANNEL_TEXT, m_options.text);
  SetControlText(window, IDC_CHANNEL_FORMS, "There are: " + ChannelForms());
  for (const int value : {IDC_CHANNEL_DESCRIPTION, IDC_CHANNEL_CONFIGURATION, IDC_CHANNEL_STATE, IDC_USE_HOLDER,
                          IDC_USE_TRAFFIC, IDC_USE_CALLS})
    SendDlgItemMessageA(m_window, value, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0); // in line with the labels
  ShowConnected();
}

void ChannelPanel::ShowHistory() {
  const HWND combo = GetDlgItem(m_window, IDC_CHANNEL_TEXT);
  const std::string typed = ControlText(combo);
  SendMessageA(combo, CB_RESETCONTENT, 0, 0);
  Recent channels = m_notes.settings.Get().channels;
  for (const std::string& other : {m_options.text, ChannelOptions().text}) {
    if (std::find(channels.begin(), channels.end(), other) == channels.end())
      channels.push_back(other);
  }
  for (const std::string& channel : channels)
    SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(channel.c_str()));
  SetWindowTextA(combo, typed.c_str());
}

void ChannelPanel::Connect() {
  if (m_connected)
    return;
  m_options.text = ControlText(GetDlgItem(m_window, IDC_CHANNEL_TEXT));
  m_notes.log.Add(LogTopic::kChannel, "connecting to " + m_options.text);
  m_notes.Trace(kTraceConnect, {{"channel", m_options.text}});
  auto made = [this] {
    const WaitCursor wait;
    return MakeChannel(m_options);
  }();
  if (!made) {
    m_notes.log.Add(LogTopic::kError, made.error().text);
    m_notes.Trace(kTraceLost, {{"reason", made.error().text}});
    ShowChannelError(m_window, made.error().text);
    return;
  }
  m_notes.settings.Change([this](Settings& settings) { Remember(settings.channels, m_options.text); });
  ShowHistory();
  m_notes.use.Reset();
  m_connected =
      m_slot.Replace(std::make_unique<TracingChannel>(std::move(*made), m_notes.records, TraceLooks::kLeftOut,
                                                      [this](const void* owner) { return m_notes.use.NameOf(owner); }));
  m_connecting = m_connected;
  ShowConnected();
}

void ChannelPanel::Disconnect() {
  if (!m_connected)
    return;
  if (Release()) {
    m_notes.log.Add(LogTopic::kChannel, m_options.text + ": disconnected");
    m_notes.Trace(kTraceDisconnect, {{"channel", m_options.text}});
  } else {
    ShowError(m_window, "A tool uses the channel just now. Stop its script or its copy first.");
  }
}

// False, and nothing has changed, while a tool uses the channel.
bool ChannelPanel::Release() {
  if (!m_slot.Replace(nullptr))
    return false;
  m_connected = false;
  m_connecting = false;
  ShowConnected();
  return true;
}

std::string ChannelPanel::TakeFailure() {
  if (!m_connecting || m_slot.IsConnecting())
    return {};
  m_connecting = false;
  const std::string reason = ReasonForClosed();
  if (!reason.empty()) {
    NoteState();
    Release();
  }
  return reason;
}

void ChannelPanel::Refresh() {
  if (m_slot.GetState() == 1)
    m_connecting = false; // what happens from now on is a loss
  NoteState();
  SetControlText(m_window, IDC_CHANNEL_DESCRIPTION, m_slot.GetInfoString(OND_INFO_DESCRIPTION, 0));
  SetControlText(m_window, IDC_CHANNEL_CONFIGURATION, m_slot.GetInfoString(OND_INFO_CONFIGURATION, 0));
  SetControlText(m_window, IDC_CHANNEL_STATE, StateText());
}

ChannelPanel::State ChannelPanel::StateNow() {
  if (!m_connected)
    return State::kNone;
  if (m_slot.GetState() == 1)
    return State::kOpen;
  return m_slot.IsConnecting() ? State::kConnecting : State::kClosed;
}

// A channel opens, and may be lost and found again while it is connected.
void ChannelPanel::NoteState() {
  const State state = StateNow();
  const State before = std::exchange(m_noted, state);
  if (state == before)
    return;
  if (state == State::kOpen) {
    m_notes.log.Add(LogTopic::kChannel, m_options.text + ": open");
    m_notes.Trace(kTraceOpened);
  } else if (state == State::kClosed || (state == State::kConnecting && before == State::kOpen)) {
    const std::string reason = state == State::kClosed ? ReasonForClosed() : "connecting again";
    m_notes.log.Add(LogTopic::kError, m_options.text + ": lost: " + reason);
    m_notes.Trace(kTraceLost, {{"reason", reason}});
  }
}

// The text can be changed only while it has no effect yet.
void ChannelPanel::ShowConnected() {
  const HWND combo = GetDlgItem(m_window, IDC_CHANNEL_TEXT);
  if (m_connected && (GetFocus() == combo || IsChild(combo, GetFocus())))
    SendMessageA(m_window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(m_window, IDM_CONNECT)), TRUE);
  EnableWindow(combo, !m_connected);
  SetControlText(m_window, IDM_CONNECT, m_connected ? "&Disconnect" : "&Connect");
  ModifyMenuA(GetMenu(m_window), IDM_CONNECT, MF_BYCOMMAND | MF_STRING, IDM_CONNECT,
              m_connected ? "&Disconnect\tF5" : "&Connect\tF5");
  Refresh();
}

std::string ChannelPanel::StateText() const {
  if (!m_connected)
    return "not connected";
  if (m_slot.IsConnecting())
    return "connecting";
  if (m_slot.GetState() == 1)
    return m_slot.IsUsed() ? "open, used by a tool" : "open";
  const std::string reason = ReasonForClosed();
  return reason.empty() ? "closed" : "closed: " + reason;
}

// Of a channel that is not connecting any more; empty when it has no reason to be closed.
std::string ChannelPanel::ReasonForClosed() const {
  const std::int32_t code = m_slot.WaitUntilOpen(); // answers at once
  return code != 0 ? m_slot.GetInfoString(OND_INFO_ERROR, code) : "";
}

} // namespace host
