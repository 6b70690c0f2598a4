// A place for a channel that users plug in and pull out while clients stay connected.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <mutex>
#include <vector>

namespace host {

// Clients are connected to the slot, which lives as long as they do; what is plugged in may change whenever no client
// uses it. So a script that starts in the very moment in which its channel is pulled out finds an empty slot, and not a
// channel that is gone.
//
// Empty, it cannot be locked, is closed and has no texts. `GetInfoString` and `GetState` outside of a lock, and what
// a channel has beside the contract, belong to the thread that plugs; everything else as the channel inside.
class ChannelSlot : public ForwardingChannel {
public:
  ChannelSlot() : ForwardingChannel(nullptr) {}

  // Plugs a channel in, or pulls it out (null), and ends the one that was there. False, and nothing has changed, while
  // a client holds the lock or waits for it.
  bool Replace(std::unique_ptr<Channel> channel);
  bool IsUsed() const;

  bool IsConnecting() override;
  std::int32_t WaitUntilOpen() override;
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override;
  std::int32_t Unlock(void* owner) override;

private:
  void Around(ChannelCall& call) override;
  // Counts a lock of `owner` from before it is asked for, so that the channel stays during the wait too. False: memory
  // ran out.
  bool Enter(void* owner);
  // Takes one such count back; without effect for an owner that has none.
  void Leave(void* owner);

  mutable std::mutex m_mutex; // guards the field below, and the channel inside against replacement
  std::vector<void*> m_users; // owners, one entry for each lock
};

} // namespace host
