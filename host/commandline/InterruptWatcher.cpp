#include "host/commandline/InterruptWatcher.h"

#include <chrono>
#include <utility>

namespace host {
namespace {

constexpr std::chrono::milliseconds kRepeatInterval{10};

} // namespace

InterruptWatcher::InterruptWatcher(std::function<void(const InterruptCause&)> stop)
    : m_stop(std::move(stop)), m_thread(&InterruptWatcher::Watch, this) {}

InterruptWatcher::~InterruptWatcher() {
  {
    const std::lock_guard guard(m_mutex);
    m_ending = true;
  }
  m_changed.notify_one();
  m_interrupt.Cancel();
  m_thread.join();
}

void InterruptWatcher::Watch() {
  const std::optional<InterruptCause> cause = m_interrupt.Wait();
  if (!cause)
    return;
  m_interrupted = cause->name;
  std::unique_lock guard(m_mutex);
  while (!m_ending) {
    m_stop(*cause);
    m_changed.wait_for(guard, kRepeatInterval, [this] { return m_ending; });
  }
}

} // namespace host
