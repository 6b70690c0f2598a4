#include "host/windows/OwnConsole.h"

#include <windows.h>

namespace host {

void LeaveOwnConsole() {
  DWORD processes[2]; // room to tell one from more
  if (GetConsoleProcessList(processes, 2) == 1)
    FreeConsole();
}

} // namespace host
