#include "filemanager/CONXFileManager.h"

#include "filemanager/CFileManagerDialog.h"

CONXDialog* CONXFileManager::CreateNewDialog(OndWindow) {
  return new CFileManagerDialog;
}

void CONXFileManager::DeleteDialog(CONXDialog* dialog) {
  CONXDialog::Delete(dialog);
}
