#include "host/windows/ChannelPanel.h"

#include "host/trace/TracingChannel.h"
#include "host/windows/Boxes.h"
#include "host/windows/ControlText.h"
#include "host/windows/resource.h"

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

// Puts a text that was used to the head of a combo box's list.
void Remember(HWND combo, const std::string& text) {
  const auto parameter = reinterpret_cast<LPARAM>(text.c_str());
  if (const LRESULT known = SendMessageA(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), parameter);
      known != CB_ERR)
    SendMessageA(combo, CB_DELETESTRING, static_cast<WPARAM>(known), 0);
  SendMessageA(combo, CB_INSERTSTRING, 0, parameter);
  SendMessageA(combo, CB_SETCURSEL, 0, 0);
}

} // namespace

void ChannelPanel::Attach(HWND window) {
  m_window = window;
  const HWND combo = GetDlgItem(window, IDC_CHANNEL_TEXT);
  Remember(combo, ChannelOptions().text);
  Remember(combo, m_options.text);
  SetText(IDC_CHANNEL_FORMS, "There are: " + ChannelForms());
  for (const int value : {IDC_CHANNEL_DESCRIPTION, IDC_CHANNEL_CONFIGURATION, IDC_CHANNEL_STATE})
    SendDlgItemMessageA(window, value, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0); // in line with the labels
  ShowConnected();
}

void ChannelPanel::Connect() {
  if (m_connected)
    return;
  m_options.text = ControlText(GetDlgItem(m_window, IDC_CHANNEL_TEXT));
  auto made = [this] {
    const WaitCursor wait;
    return MakeChannel(m_options);
  }();
  if (!made) {
    ShowChannelError(m_window, made.error().text);
    return;
  }
  Remember(GetDlgItem(m_window, IDC_CHANNEL_TEXT), m_options.text);
  m_connected = m_slot.Replace(std::make_unique<TracingChannel>(std::move(*made), m_records, TraceLooks::kLeftOut));
  m_connecting = m_connected;
  ShowConnected();
}

void ChannelPanel::Disconnect() {
  if (!m_connected)
    return;
  if (!Release())
    ShowError(m_window, "A tool uses the channel just now. Stop its script or its copy first.");
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
  if (!reason.empty())
    Release();
  return reason;
}

void ChannelPanel::Refresh() {
  if (m_slot.GetState() == 1)
    m_connecting = false; // what happens from now on is a loss
  SetText(IDC_CHANNEL_DESCRIPTION, m_slot.GetInfoString(OND_INFO_DESCRIPTION, 0));
  SetText(IDC_CHANNEL_CONFIGURATION, m_slot.GetInfoString(OND_INFO_CONFIGURATION, 0));
  SetText(IDC_CHANNEL_STATE, StateText());
}

// The text can be changed only while it has no effect yet.
void ChannelPanel::ShowConnected() {
  const HWND combo = GetDlgItem(m_window, IDC_CHANNEL_TEXT);
  if (m_connected && (GetFocus() == combo || IsChild(combo, GetFocus())))
    SendMessageA(m_window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(m_window, IDM_CONNECT)), TRUE);
  EnableWindow(combo, !m_connected);
  SetText(IDM_CONNECT, m_connected ? "&Disconnect" : "&Connect");
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

// Leaves a text that is right alone, so that it does not flicker and what the user has selected in it stays.
void ChannelPanel::SetText(int control, const std::string& text) {
  const HWND window = GetDlgItem(m_window, control);
  if (ControlText(window) != text)
    SetWindowTextA(window, text.c_str());
}

} // namespace host
