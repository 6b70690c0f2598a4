// The File Manager: local files to the device, and the device's directory.
#pragma once

#include "frame/CONXDeviceClient.h"

class CONXFileManager : public CONXDeviceClient {
public:
  std::uint32_t GetObjType() override { return ONX_OBJ_FILE_MANAGER; }

protected:
  CONXDialog* CreateNewDialog(OndWindow parent) override;
  void DeleteDialog(CONXDialog* dialog) override;
};
