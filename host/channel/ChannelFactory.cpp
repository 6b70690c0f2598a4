#include "host/channel/ChannelFactory.h"

#include "host/channel/LockingChannel.h"
#include "host/channel/stream/StreamChannel.h"
#include "host/support/Text.h"

#include <utility>

namespace host {
namespace {

ChannelResult Failed(std::string error, bool badText) {
  return {nullptr, std::move(error), badText};
}

ChannelResult MakeSimulated(const ChannelOptions& options, const std::string& settings) {
  if (!settings.empty())
    return Failed("the channel \"sim\" has no settings", true);
  std::optional<StoreFolder> folder;
  if (!options.sim.folder.empty()) {
    folder = StoreFolder::Open(options.sim.folder);
    if (!folder)
      return Failed("cannot use the folder " + options.sim.folder + " for the device's files", false);
  }
  return {std::make_unique<SimulatedDevice>(options.sim, std::move(folder)), {}, false};
}

ChannelResult MakeTcp(const ChannelOptions& options, const std::string& settings) {
  std::string error;
  const auto address = ParseTcpAddress(settings, error);
  if (!address)
    return Failed(Quoted(options.text) + ": " + error, true);
  return {std::make_unique<StreamChannel>("TCP connection to " + address->Text(), "raw bytes", MakeTcpLink(*address)),
          {},
          false};
}

ChannelResult MakeSerial(const ChannelOptions& options, const std::string& settings) {
  std::string error;
  const auto line = ParseSerialLine(settings, error);
  if (!line)
    return Failed(Quoted(options.text) + ": " + error, true);
  return {
      std::make_unique<StreamChannel>("Serial port " + line->port, line->Settings(), MakeSerialLink(*line)), {}, false};
}

// How each kind of channel is made from the settings behind its name.
struct Kind {
  const char* name;
  ChannelResult (*make)(const ChannelOptions& options, const std::string& settings);
};
constexpr Kind kKinds[] = {{"sim", MakeSimulated}, {"tcp", MakeTcp}, {"serial", MakeSerial}};

ChannelResult MakeSource(const ChannelOptions& options) {
  const std::size_t colon = options.text.find(':');
  const std::string name = options.text.substr(0, colon);
  const std::string settings = colon == std::string::npos ? std::string() : options.text.substr(colon + 1);
  for (const Kind& kind : kKinds) {
    if (name == kind.name)
      return kind.make(options, settings);
  }
  return Failed("unknown channel " + Quoted(options.text) + "; there are: " + kChannelForms, true);
}

} // namespace

ChannelResult MakeChannel(const ChannelOptions& options) {
  ChannelResult result = MakeSource(options);
  if (result.channel)
    result.channel = std::make_unique<LockingChannel>(std::move(result.channel));
  if (result.channel && !options.faults.empty())
    result.channel = std::make_unique<FaultyChannel>(std::move(result.channel), options.faults);
  return result;
}

} // namespace host
