#include "host/support/Signal.h"

#include <new>
#include <sys/eventfd.h>
#include <unistd.h>

namespace host {

Signal::Signal() : m_native(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (m_native < 0)
    throw std::bad_alloc();
}

Signal::~Signal() {
  close(static_cast<int>(m_native));
}

void Signal::Raise() noexcept {
  const std::uint64_t one = 1;
  // A full counter refuses and is as good as raised.
  [[maybe_unused]] const auto written = write(static_cast<int>(m_native), &one, sizeof one);
}

void Signal::Clear() noexcept {
  std::uint64_t count;
  [[maybe_unused]] const auto emptied = read(static_cast<int>(m_native), &count, sizeof count);
}

} // namespace host
