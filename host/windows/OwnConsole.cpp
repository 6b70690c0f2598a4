#include "host/windows/OwnConsole.h"

#include <string>
#include <windows.h>

namespace host {
namespace {

// Wine's console on a Unix terminal: no other Windows program is seen in it, and its window never shows.
bool IsUnixTerminal() {
  const HWND window = GetConsoleWindow();
  char kind[32] = "";
  GetClassNameA(window, kind, sizeof kind);
  return std::string(kind) == "WineConsoleClass" && !IsWindowVisible(window);
}

} // namespace

void LeaveOwnConsole() {
  DWORD processes[2]; // room to tell one from more
  if (GetConsoleProcessList(processes, 2) == 1 && !IsUnixTerminal())
    FreeConsole();
}

} // namespace host
