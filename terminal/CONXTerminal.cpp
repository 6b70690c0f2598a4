#include "terminal/CONXTerminal.h"

#include "terminal/CTerminalDialog.h"

EONX_ERR_ERRCODE_ CONXTerminal::ShowDialogNonModal(OndWindow parent) {
  const CPresence::CWatch here = WatchPresence();
  const EONX_ERR_ERRCODE_ result = CONXDeviceClient::ShowDialogNonModal(parent);
  if (here && result == EONX_ERR_NONE)
    static_cast<CTerminalDialog*>(GetDialog())->FocusInputLine();
  return result;
}

CONXDialog* CONXTerminal::CreateNewDialog(OndWindow) {
  return new CTerminalDialog;
}

void CONXTerminal::DeleteDialog(CONXDialog* dialog) {
  CONXDialog::Delete(dialog);
}
