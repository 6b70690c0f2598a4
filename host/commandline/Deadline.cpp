#include "host/commandline/Deadline.h"

#include <utility>

namespace host {
namespace {

constexpr std::chrono::milliseconds kRepeatInterval{10};

} // namespace

Deadline::Deadline(std::optional<std::chrono::milliseconds> time, std::function<void()> stop)
    : m_stop(std::move(stop)) {
  if (time)
    m_thread = std::thread([this, time = *time] { Watch(time); });
}

Deadline::~Deadline() {
  {
    const std::lock_guard guard(m_mutex);
    m_ending = true;
  }
  m_changed.notify_one();
  if (m_thread.joinable())
    m_thread.join();
}

void Deadline::Watch(std::chrono::milliseconds time) {
  std::unique_lock guard(m_mutex);
  if (m_changed.wait_for(guard, time, [this] { return m_ending; }))
    return;
  m_passed = true;
  do
    m_stop();
  while (!m_changed.wait_for(guard, kRepeatInterval, [this] { return m_ending; }));
}

} // namespace host
