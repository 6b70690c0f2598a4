#include "host/support/Interrupt.h"

#include <atomic>
#include <windows.h>

namespace host {
namespace {

constexpr DWORD kNone = ~DWORD{0};
std::atomic<bool> g_taken;          // an Interrupt exists
std::atomic<DWORD> g_first = kNone; // the first event that came to it

// Auto-reset; lives as long as the process, because the system calls the handler on a thread of its own, at any moment.
HANDLE Event() {
  static const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  return event;
}

InterruptCause CauseOf(DWORD control) {
  switch (control) {
  case CTRL_BREAK_EVENT:
    return {"Ctrl+Break", true};
  case CTRL_CLOSE_EVENT:
    return {"closing the console"};
  case CTRL_LOGOFF_EVENT:
    return {"logging off"};
  case CTRL_SHUTDOWN_EVENT:
    return {"shutting down"};
  default:
    return {"Ctrl+C", true};
  }
}

BOOL WINAPI OnControl(DWORD control) {
  if (!g_taken)
    return FALSE; // the next handler ends the process
  DWORD none = kNone;
  const bool isFirst = g_first.compare_exchange_strong(none, control);
  if (isFirst)
    SetEvent(Event());
  if (CauseOf(control).isKey)
    return isFirst ? TRUE : FALSE;
  Sleep(INFINITE); // the end of the process ends this; returning would end the process
  return TRUE;
}

} // namespace

// The handler stays: the system holds a lock around a handler that does not return, and taking it away needs that lock.
Interrupt::Interrupt() {
  g_first = kNone;
  ResetEvent(Event());
  g_taken = true;
  static const BOOL installed = SetConsoleCtrlHandler(OnControl, TRUE);
  static_cast<void>(installed);
}

Interrupt::~Interrupt() {
  g_taken = false;
}

std::optional<InterruptCause> Interrupt::Wait() {
  WaitForSingleObject(Event(), INFINITE);
  const DWORD first = g_first;
  return first != kNone ? std::optional(CauseOf(first)) : std::nullopt;
}

void Interrupt::Cancel() {
  SetEvent(Event());
}

} // namespace host
