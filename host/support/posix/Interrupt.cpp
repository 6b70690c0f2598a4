#include "host/support/Interrupt.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sched.h>
#include <utility>

namespace host {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr std::size_t kKey = 0; // the one that Ctrl+C sends

constexpr int kNone = 0;
constexpr int kClosed = -1; // nobody wants to know

InterruptCause CauseOf(int signalNumber) {
  switch (signalNumber) {
  case SIGTERM:
    return {"SIGTERM"};
  case SIGHUP:
    return {"SIGHUP"};
  default:
    return {"Ctrl+C", true};
  }
}

// What the handler touches: lock-free variables, `sigaction`, and what `stop` does.
std::atomic<int> g_first = kClosed; // the first signal
std::atomic<bool> g_told;           // `stop` has returned
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
const std::function<void(const InterruptCause&)>* g_stop;
struct sigaction g_earlierActions[std::size(kSignals)];

void OnSignal(int signalNumber) {
  const int savedError = errno;
  int none = kNone;
  if (g_first.compare_exchange_strong(none, signalNumber)) {
    sigaction(kSignals[kKey], &g_earlierActions[kKey], nullptr);
    (*g_stop)(CauseOf(signalNumber));
    g_told = true;
  }
  errno = savedError;
}

} // namespace

// The system does so by itself.
void LetInterruptsEndProcess() {}

struct Interrupt::Body {
  std::function<void(const InterruptCause&)> stop;
};

Interrupt::Interrupt(std::function<void(const InterruptCause&)> stop) : m_body(new Body{std::move(stop)}) {
  g_stop = &m_body->stop;
  g_told = false;
  g_first = kNone;
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &g_earlierActions[i]);
    if (g_earlierActions[i].sa_handler != SIG_IGN)
      sigaction(kSignals[i], &action, nullptr);
  }
}

Interrupt::~Interrupt() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i)
    sigaction(kSignals[i], &g_earlierActions[i], nullptr);
  // Another thread may be in the handler still.
  if (g_first.exchange(kClosed) != kNone)
    while (!g_told)
      sched_yield();
}

const char* Interrupt::Interrupted() const {
  const int first = g_first;
  return first != kNone ? CauseOf(first).name : nullptr;
}

} // namespace host
