// Base of the three objects' windows.
#pragma once

#include "frame/CONXDeviceClient.h"

#include <windows.h>

class CONXDialog {
public:
  virtual ~CONXDialog() = default;
  static void Delete(CONXDialog* dialog) { delete dialog; }
  HWND GetSafeHwnd() const { return nullptr; }
  void ShowWindow(int) {}
  void DestroyWindow() {}
  void SetOwnerClass(CONXDeviceClient_0*) {}
  void SetDeviceComm(COndDeviceComm_0*) {}
  int Create(HWND) { return 0; }
};
