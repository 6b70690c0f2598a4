// Builds a channel, decorators and all, from what a user asked for. Every program of the host does it here.
#pragma once

#include "host/channel/Channel.h"
#include "host/channel/FaultyChannel.h"
#include "host/channel/sim/SimulatedDevice.h"

#include <memory>
#include <string>
#include <vector>

namespace host {

struct ChannelOptions {
  std::string text = "sim"; // KIND[:SETTINGS]
  SimulatedDeviceOptions sim;
  std::vector<Fault> faults;
};

struct ChannelResult {
  std::unique_ptr<Channel> channel; // null: `error` says why
  std::string error;
  bool badText = false; // the error lies in ChannelOptions::text itself
};

// Forms of ChannelOptions::text, for help texts.
inline constexpr const char* kChannelForms = "sim, tcp:HOST:PORT, serial:PORT:BAUD[:FORMAT]";

// Does not wait for a connection: the channel may still be connecting, see `Channel::WaitUntilOpen`.
ChannelResult MakeChannel(const ChannelOptions& options);

} // namespace host
