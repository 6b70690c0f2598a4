#include "filemanager/CONXFileManager.h"

#include "frame/CONXDialog.h"

void CONXFileManager::DeleteDialog(CONXDialog* dialog) {
  CONXDialog::Delete(dialog);
}
