#include "host/support/Interrupt.h"

#include <atomic>
#include <thread>
#include <utility>
#include <windows.h>

namespace host {
namespace {

constexpr DWORD kRepeatIntervalMs = 10;
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

// The handler stays: the system holds a lock around a handler that does not return, and taking it away needs that lock.
void Install() {
  static const BOOL installed = SetConsoleCtrlHandler(OnControl, TRUE);
  static_cast<void>(installed);
}

// Wine's own handler would end the process as if all had gone well.
BOOL WINAPI EndProcess(DWORD control) {
  if (CauseOf(control).isKey)
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
  return FALSE;
}

} // namespace

void LetInterruptsEndProcess() {
  SetConsoleCtrlHandler(EndProcess, TRUE);
}

struct Interrupt::Body {
  explicit Body(std::function<void(const InterruptCause&)> wanted) : stop(std::move(wanted)) {}

  void Watch() const {
    WaitForSingleObject(Event(), INFINITE);
    while (g_first != kNone && !ending) {
      stop(CauseOf(g_first));
      WaitForSingleObject(Event(), kRepeatIntervalMs);
    }
  }

  const std::function<void(const InterruptCause&)> stop;
  std::atomic<bool> ending = false; // the event tells so
  std::thread thread;
};

Interrupt::Interrupt(std::function<void(const InterruptCause&)> stop)
    : m_body(std::make_unique<Body>(std::move(stop))) {
  g_first = kNone;
  ResetEvent(Event());
  m_body->thread = std::thread([body = m_body.get()] { body->Watch(); });
  g_taken = true;
  Install();
}

Interrupt::~Interrupt() {
  g_taken = false;
  m_body->ending = true;
  SetEvent(Event());
  m_body->thread.join();
}

const char* Interrupt::Interrupted() const {
  const DWORD first = g_first;
  return first != kNone ? CauseOf(first).name : nullptr;
}

} // namespace host
