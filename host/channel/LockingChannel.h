// Reserves a channel for one client at a time.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <condition_variable>
#include <mutex>

namespace host {

// A lock belongs to the owner pointer that it was taken for, not to a thread: any thread may take it again or give it
// back under that pointer. Nested locks are counted. [any thread]
class LockingChannel : public ForwardingChannel {
public:
  using ForwardingChannel::ForwardingChannel;

  // 0, kChannelLocked when another owner still holds the channel after `timeoutMs`, kInvalidArgument for no owner.
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override;
  // 0, or kNotLocked (and no effect) when `owner` does not hold the channel.
  std::int32_t Unlock(void* owner) override;

private:
  std::mutex m_mutex; // guards the fields below
  std::condition_variable m_released;
  void* m_owner = nullptr; // null: free
  std::uint64_t m_depth = 0;
};

} // namespace host
