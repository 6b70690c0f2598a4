#include "window/CWinApp.h"

// The first byte of this module's image, provided by the linker; its address is the instance handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;

HINSTANCE CWinApp::GetModuleInstance() {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}
