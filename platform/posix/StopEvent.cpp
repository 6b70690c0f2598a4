#include "platform/Platform.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <new>

namespace platform {

// A counter of the kernel's and not a condition variable: raising it is the one thing here that a signal handler may
// do.
struct StopEvent::Body {
  int counter = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

  ~Body() {
    if (counter >= 0)
      close(counter);
  }
};

namespace {

using Clock = std::chrono::steady_clock;

// What is left until `deadline`, as `poll` takes it: rounded up, and in pieces when an int cannot hold it.
int MillisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, INT_MAX));
}

} // namespace

StopEvent::StopEvent() : m_body(std::make_unique<Body>()) {
  if (m_body->counter < 0)
    throw std::bad_alloc();
}

StopEvent::~StopEvent() = default;

void StopEvent::Set() {
  const int errorOfInterrupted = errno;
  const std::uint64_t one = 1;
  // A full counter refuses the byte and is as good as set.
  [[maybe_unused]] const auto written = write(m_body->counter, &one, sizeof one);
  m_set.store(true, std::memory_order_release);
  errno = errorOfInterrupted;
}

void StopEvent::Reset() {
  m_abandoned.store(false, std::memory_order_release);
  m_set.store(false, std::memory_order_release);
  std::uint64_t count;
  [[maybe_unused]] const auto emptied = read(m_body->counter, &count, sizeof count);
}

bool StopEvent::Wait(std::uint32_t milliseconds) const {
  if (IsSet())
    return true;
  const bool forever = milliseconds == kForever;
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(forever ? 0 : milliseconds);
  pollfd raised{m_body->counter, POLLIN, 0};
  for (;;) {
    const int timeout = forever ? -1 : MillisecondsUntil(deadline);
    const int ready = poll(&raised, 1, timeout);
    if (ready > 0)
      return true;
    if (ready == 0 && timeout < INT_MAX)
      return false;
    if (ready < 0 && errno != EINTR && errno != EAGAIN)
      return IsSet();
  }
}

} // namespace platform
