#include "host/support/StreamSetup.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace host {
namespace {

bool IsConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != FALSE;
}

} // namespace

// A stream that is closed here keeps its number to itself.
bool PrepareStandardStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  return true;
}

bool IsOutputTerminal() {
  return IsConsole(STD_OUTPUT_HANDLE);
}
bool IsMessagesTerminal() {
  return IsConsole(STD_ERROR_HANDLE);
}

} // namespace host
