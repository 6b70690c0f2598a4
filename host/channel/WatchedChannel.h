// Tells when a script goes on using a channel that has ended.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <functional>

namespace host {

// Watches what scripts use: bytes both ways, and the sending of files. For one client, which reads as scripts do: again
// and again, until no more is there. The read that finds no more behind the device's last bytes only ends their
// reading; so a device that answers and hangs up has done what it was asked for.
class WatchedChannel : public ForwardingChannel {
public:
  enum class Left { kNothing, kBytesToRead };
  // `usedAfterEnd` is called at the end of each such operation, on the operation's thread, with what is left to do. It
  // throws nothing.
  WatchedChannel(std::unique_ptr<Channel> inner, std::function<void(Left)> usedAfterEnd);

private:
  void Around(ChannelCall& call) override;

  const std::function<void(Left)> m_usedAfterEnd;
  bool m_reading = false; // the last read has found something
};

} // namespace host
