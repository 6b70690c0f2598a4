// Builds a channel, decorators and all, from what a user asked for. Every program of the host does it here.
#pragma once

#include "host/channel/Channel.h"
#include "host/channel/FaultyChannel.h"
#include "host/channel/sim/SimulatedDevice.h"

#include <tl/expected.hpp>

#include <memory>
#include <string>
#include <vector>

namespace host {

struct ChannelOptions {
  std::string text = "sim"; // KIND[:SETTINGS]
  SimulatedDeviceOptions sim;
  std::vector<Fault> faults;
};

struct ChannelFailure {
  std::string text;     // for users
  bool badText = false; // it lies in ChannelOptions::text itself
};

// The forms of ChannelOptions::text, one for each kind of channel, for users: "sim, tcp:HOST:PORT, …".
std::string ChannelForms();
// The same with the options that stand behind the commas of lines.
std::string ChannelFormsWithOptions();

// Does not wait for a connection: the channel, never null, may still be connecting, see `Channel::WaitUntilOpen`.
tl::expected<std::unique_ptr<Channel>, ChannelFailure> MakeChannel(const ChannelOptions& options);

} // namespace host
