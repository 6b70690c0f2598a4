#include "terminal/CONXTerminal.h"

#include "frame/CONXDialog.h"

void CONXTerminal::DeleteDialog(CONXDialog* dialog) {
  CONXDialog::Delete(dialog);
}
