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

EONX_ERR_ERRCODE_ CONXDeviceClient::Connect(COndDeviceComm_0* channel) {
  if (m_dialog)
    NoThrow([=, this] { m_dialog->SetDeviceComm(channel); });
  m_channel = channel;
  return EONX_ERR_NONE;
}

EONX_ERR_ERRCODE_ CONXDeviceClient::Call(std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t) {
  return EONX_ERR_NONE;
}

EONX_ERR_ERRCODE_ CONXDeviceClient::ShowDialogNonModal(OndWindow parent) {
  return NoThrow(EONX_ERR_DIALOG, [=, this] {
    if (m_dialog && !IsWindow(m_dialog->GetSafeHwnd())) {
      DeleteDialog(m_dialog);
      m_dialog = nullptr;
    }
    if (!m_dialog) {
      m_dialog = CreateNewDialog(parent);
      if (!m_dialog)
        return EONX_ERR_DIALOG;
      m_dialog->SetOwnerClass(this);
      m_dialog->SetDeviceComm(m_channel);
      if (!m_dialog->Create(parent))
        return EONX_ERR_DIALOG; // the next call or the destructor deletes it
    }
    m_dialog->ShowWindow(SW_SHOW);
    return EONX_ERR_NONE;
  });
}

EONX_ERR_ERRCODE_ CONXDeviceClient::CloseDialogNonModal() {
  if (!m_dialog || !IsWindow(m_dialog->GetSafeHwnd()))
    return EONX_ERR_DIALOG;
  m_dialog->ShowWindow(SW_HIDE);
  return EONX_ERR_NONE;
}

std::int32_t CONXDeviceClient::IsNonModalDialogOpen() {
  return m_dialog && IsWindow(m_dialog->GetSafeHwnd()) && IsWindowVisible(m_dialog->GetSafeHwnd());
}

void CONXDeviceClient::SetDlgEventData(_TONX_DLGEVENTDATA* data) {
  m_dlgEventData = data ? *data : _TONX_DLGEVENTDATA{};
}

CONXDialog* CONXDeviceClient::CreateNewDialog(OndWindow) {
  return nullptr;
}

void CONXDeviceClient::DeleteDialog(CONXDialog*) {}

// The host may end the object from inside a route's answer, so the record is a copy.
std::uint32_t CONXDeviceClient::SignalDlgEvent(std::uint32_t event) {
  const _TONX_DLGEVENTDATA route = m_dlgEventData;
  CONXDeviceClient_0* const client = this;
  std::uint32_t mayHide = 1;
  if (route.threadMsg != 0) {
    PostThreadMessageA(route.threadId, route.threadMsg, reinterpret_cast<WPARAM>(client), event);
    mayHide = 0;
  }
  if (route.hWnd)
    mayHide = static_cast<std::uint32_t>(SendMessageA(route.hWnd, route.uMsg, reinterpret_cast<WPARAM>(client), event));
  return route.callback ? route.callback(client, route.userData, event) : mayHide;
}
