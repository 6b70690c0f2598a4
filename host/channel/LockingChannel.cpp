#include "host/channel/LockingChannel.h"

#include "host/channel/ChannelErrors.h"

#include <chrono>

namespace host {

std::int32_t LockingChannel::Lock(void* owner, std::uint32_t timeoutMs) {
  if (!owner)
    return kInvalidArgument;
  std::unique_lock guard(m_mutex);
  const auto available = [&] { return !m_owner || m_owner == owner; };
  if (!m_released.wait_for(guard, std::chrono::milliseconds(timeoutMs), available))
    return kChannelLocked;
  m_owner = owner;
  ++m_depth;
  return kChannelOk;
}

std::int32_t LockingChannel::Unlock(void* owner) {
  const std::lock_guard guard(m_mutex);
  if (!owner || owner != m_owner)
    return kNotLocked;
  if (--m_depth == 0) {
    m_owner = nullptr;
    // All of them: another thread of the owner that comes next may wait here too, and one wake-up would miss it.
    m_released.notify_all();
  }
  return kChannelOk;
}

} // namespace host
