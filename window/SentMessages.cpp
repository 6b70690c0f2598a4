#include "window/SentMessages.h"

void ReplyToSender() {
  if ((InSendMessageEx(nullptr) & (ISMEX_SEND | ISMEX_REPLIED)) == ISMEX_SEND)
    ReplyMessage(0);
}

bool WaitServingSentMessages(HANDLE handle, DWORD milliseconds) {
  const DWORD count = handle ? 1 : 0;
  const DWORD answer =
      MsgWaitForMultipleObjectsEx(count, count ? &handle : nullptr, milliseconds, QS_SENDMESSAGE, MWMO_INPUTAVAILABLE);
  if (count != 0 && answer == WAIT_OBJECT_0)
    return true;
  if (answer == WAIT_OBJECT_0 + count) {
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
  return false;
}
