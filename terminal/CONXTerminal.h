// The Terminal: a line in, the device's answers out.
#pragma once

#include "frame/CONXDeviceClient.h"

class CONXTerminal : public CONXDeviceClient {
public:
  std::uint32_t GetObjType() override { return ONX_OBJ_TERMINAL; }

protected:
  void DeleteDialog(CONXDialog* dialog) override;
};
