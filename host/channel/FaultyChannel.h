// Makes chosen calls of a channel fail, for trying out how scripts and windows behave.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <tl/expected.hpp>

#include <array>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct Fault {
  ChannelOperation operation;
  std::uint64_t call; // from 1; 0: every call
  std::int32_t code;  // what the call answers; 0 pretends success
};

// Reads "OPERATION[:N]=CODE", or tells a user what is wrong.
tl::expected<Fault, std::string> ParseFault(std::string_view text);

// A call with a fault answers the fault's code and does not reach the channel inside, except that `Unlock` still gives
// the lock back. [as the channel inside]
class FaultyChannel : public ForwardingChannel {
public:
  FaultyChannel(std::unique_ptr<Channel> inner, std::vector<Fault> faults);

private:
  void Around(ChannelCall& call) override;
  // Counts a call of `operation`; answers the code of the first fault that is meant for it.
  std::optional<std::int32_t> NextFault(ChannelOperation operation);

  const std::vector<Fault> m_faults;
  std::mutex m_mutex; // guards m_calls
  std::array<std::uint64_t, kChannelOperations.size()> m_calls{};
};

} // namespace host
