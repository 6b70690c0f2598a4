#include "host/support/StreamSetup.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace host {

// A stream that is closed here keeps its number to itself.
bool PrepareStandardStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  return true;
}

bool IsOutputTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != FALSE;
}

} // namespace host
