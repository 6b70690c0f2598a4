#include "host/support/Interrupt.h"

#include <atomic>
#include <windows.h>

namespace host {
namespace {

std::atomic<bool> g_interrupted;

// Auto-reset; lives as long as the process, because the system calls the handler on a thread of its own, at any moment.
HANDLE Event() {
  static const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  return event;
}

BOOL WINAPI OnControl(DWORD control) {
  if ((control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT) || g_interrupted.exchange(true))
    return FALSE; // the system's own handler ends the process
  SetEvent(Event());
  return TRUE;
}

} // namespace

Interrupt::Interrupt() {
  g_interrupted = false;
  ResetEvent(Event());
  SetConsoleCtrlHandler(OnControl, TRUE);
}

Interrupt::~Interrupt() {
  SetConsoleCtrlHandler(OnControl, FALSE);
}

bool Interrupt::Wait() {
  WaitForSingleObject(Event(), INFINITE);
  return g_interrupted;
}

void Interrupt::Cancel() {
  SetEvent(Event());
}

} // namespace host
