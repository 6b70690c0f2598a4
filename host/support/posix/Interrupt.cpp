#include "host/support/Interrupt.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <semaphore.h>

namespace host {
namespace {

// What the handler touches: a lock-free flag and `sem_post`, both allowed in signal handlers.
std::atomic<bool> g_interrupted;
static_assert(std::atomic<bool>::is_always_lock_free);
sem_t g_event;
struct sigaction g_earlierAction;

void OnInterrupt(int) {
  const int savedError = errno;
  g_interrupted = true;
  sem_post(&g_event);
  errno = savedError;
}

} // namespace

Interrupt::Interrupt() {
  g_interrupted = false;
  sem_init(&g_event, 0, 0);
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  // The first signal gives the next one back to the system.
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigaction(SIGINT, &action, &g_earlierAction);
}

Interrupt::~Interrupt() {
  sigaction(SIGINT, &g_earlierAction, nullptr);
  sem_destroy(&g_event);
}

bool Interrupt::Wait() {
  while (sem_wait(&g_event) != 0 && errno == EINTR) {
  }
  return g_interrupted;
}

void Interrupt::Cancel() {
  sem_post(&g_event);
}

} // namespace host
