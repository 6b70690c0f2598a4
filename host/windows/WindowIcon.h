// The program's icon on a window.
#pragma once

#include "host/windows/resource.h"

#include <windows.h>

namespace host {

inline void SetWindowIcon(HWND window) {
  const auto set = [window](WPARAM which, int width, int height) {
    // Shared: the system keeps it and frees it.
    const HANDLE icon =
        LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDI_HOST), IMAGE_ICON, width, height, LR_SHARED);
    SendMessageA(window, WM_SETICON, which, reinterpret_cast<LPARAM>(icon));
  };
  set(ICON_SMALL, GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON));
  set(ICON_BIG, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
}

} // namespace host
