// The Terminal: a line in, the device's answers out.
#pragma once

#include "frame/CONXDeviceClient.h"

class CONXTerminal : public CONXDeviceClient {
public:
  std::uint32_t GetObjType() override { return ONX_OBJ_TERMINAL; }
  // The keyboard focus is in the input line then.
  EONX_ERR_ERRCODE_ ShowDialogNonModal(OndWindow parent) override;

protected:
  CONXDialog* CreateNewDialog(OndWindow parent) override;
  void DeleteDialog(CONXDialog* dialog) override;
};
