#include "host/support/Interrupt.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <semaphore.h>

namespace host {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr std::size_t kKey = 0; // the one that Ctrl+C sends

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

// What the handler touches: a lock-free number, `sigaction` and `sem_post`, all allowed in signal handlers.
std::atomic<int> g_first; // the first signal; 0 before
static_assert(std::atomic<int>::is_always_lock_free);
sem_t g_event;
struct sigaction g_earlierActions[std::size(kSignals)];

void OnSignal(int signalNumber) {
  const int savedError = errno;
  int none = 0;
  if (g_first.compare_exchange_strong(none, signalNumber)) {
    sigaction(kSignals[kKey], &g_earlierActions[kKey], nullptr);
    sem_post(&g_event);
  }
  errno = savedError;
}

} // namespace

Interrupt::Interrupt() {
  g_first = 0;
  sem_init(&g_event, 0, 0);
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &g_earlierActions[i]);
    // Whoever starts a program with this one ignored (nohup) wants it to outlive its terminal.
    const bool ignored = kSignals[i] == SIGHUP && g_earlierActions[i].sa_handler == SIG_IGN;
    if (!ignored)
      sigaction(kSignals[i], &action, nullptr);
  }
}

Interrupt::~Interrupt() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i)
    sigaction(kSignals[i], &g_earlierActions[i], nullptr);
  sem_destroy(&g_event);
}

std::optional<InterruptCause> Interrupt::Wait() {
  while (sem_wait(&g_event) != 0 && errno == EINTR) {
  }
  const int first = g_first;
  return first != 0 ? std::optional(CauseOf(first)) : std::nullopt;
}

void Interrupt::Cancel() {
  sem_post(&g_event);
}

} // namespace host
