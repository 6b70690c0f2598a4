#include "frame/CONXDeviceClient.h"

#include "frame/CONXDialog.h"
#include "util/NoThrow.h"

#include <utility>

CONXDeviceClient::CONXDeviceClient() = default;

CONXDeviceClient::~CONXDeviceClient() {
  CloseDialog();
}

void CONXDeviceClient::CloseDialog() {
  if (CONXDialog* const dialog = std::exchange(m_dialog, nullptr)) {
    NoThrow([=] { dialog->DestroyWindow(); });
    CONXDialog::Delete(dialog);
  }
}

std::int32_t CONXDeviceClient::GetParam(std::uint32_t, std::uint64_t*, std::uint64_t*, std::uint64_t*, std::uint64_t*) {
  return -1;
}

std::int32_t CONXDeviceClient::SetParam(std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t) {
  return -1;
}

std::int32_t CONXDeviceClient::GetParamLimits(std::uint32_t, std::uint64_t*, std::uint64_t*, std::uint64_t*,
                                              std::uint64_t*, std::uint64_t*, std::uint64_t*, std::uint64_t*,
                                              std::uint64_t*) {
  return -1;
}

// The dialog asks the channel for its status, behind which the object may be gone: its part is done before.
EONX_ERR_ERRCODE_ CONXDeviceClient::Connect(COndDeviceComm_0* channel) {
  m_channel = channel;
  if (CONXDialog* const dialog = m_dialog)
    NoThrow([=] { dialog->SetDeviceComm(channel); });
  return EONX_ERR_NONE;
}

EONX_ERR_ERRCODE_ CONXDeviceClient::Call(std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t) {
  return EONX_ERR_NONE;
}

// Making the window asks the channel for its status, and may show a box. Behind that the object may be gone, or have
// another window by now, and so it may once the window comes to the front.
EONX_ERR_ERRCODE_ CONXDeviceClient::ShowDialogNonModal(OndWindow parent) {
  return NoThrow(EONX_ERR_DIALOG, [=, this] {
    const CPresence::CWatch here(m_presence);
    if (m_dialog && !HasWindow())
      DeleteDialog(std::exchange(m_dialog, nullptr));
    if (!m_dialog) {
      m_dialog = CreateNewDialog(parent);
      if (!m_dialog)
        return EONX_ERR_DIALOG;
      m_dialog->SetOwnerClass(this);
      m_dialog->SetDeviceComm(m_channel);
      m_dialog->Create(parent); // the next call or the destructor deletes one that has got no window
    }
    if (!here || !HasWindow())
      return EONX_ERR_DIALOG;
    m_dialog->ShowWindow(IsIconic(m_dialog->GetSafeHwnd()) ? SW_RESTORE : SW_SHOW);
    return here && HasWindow() ? EONX_ERR_NONE : EONX_ERR_DIALOG;
  });
}

EONX_ERR_ERRCODE_ CONXDeviceClient::CloseDialogNonModal() {
  if (!HasWindow())
    return EONX_ERR_DIALOG;
  m_dialog->ShowWindow(SW_HIDE);
  return EONX_ERR_NONE;
}

std::int32_t CONXDeviceClient::IsNonModalDialogOpen() {
  return HasWindow() && IsWindowVisible(m_dialog->GetSafeHwnd());
}

bool CONXDeviceClient::HasWindow() const {
  return m_dialog && IsWindow(m_dialog->GetSafeHwnd());
}

void CONXDeviceClient::SetDlgEventData(_TONX_DLGEVENTDATA* data) {
  m_dlgEventData = data ? *data : _TONX_DLGEVENTDATA{};
}

CONXDialog* CONXDeviceClient::CreateNewDialog(OndWindow) {
  return nullptr;
}

void CONXDeviceClient::DeleteDialog(CONXDialog*) {}

// The host may delete the object from inside a route's answer, and nobody calls back for it then.
std::uint32_t CONXDeviceClient::SignalDlgEvent(std::uint32_t event) {
  const CPresence::CWatch here(m_presence);
  const _TONX_DLGEVENTDATA route = m_dlgEventData;
  CONXDeviceClient_0* const client = this;
  std::uint32_t mayHide = 1;
  if (route.threadMsg != 0) {
    PostThreadMessageA(route.threadId, route.threadMsg, reinterpret_cast<WPARAM>(client), event);
    mayHide = 0;
  }
  if (route.hWnd)
    mayHide = static_cast<std::uint32_t>(SendMessageA(route.hWnd, route.uMsg, reinterpret_cast<WPARAM>(client), event));
  return here && route.callback ? route.callback(client, route.userData, event) : mayHide;
}
