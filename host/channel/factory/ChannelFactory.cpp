#include "host/channel/factory/ChannelFactory.h"

#include "host/channel/LockingChannel.h"
#include "host/channel/replay/ReplayChannel.h"
#include "host/channel/stream/StreamChannel.h"
#include "host/support/Text.h"

#include <string_view>
#include <utility>

namespace host {
namespace {

using Made = tl::expected<std::unique_ptr<Channel>, ChannelFailure>;

auto BadText(std::string text) {
  return tl::unexpected(ChannelFailure{std::move(text), true});
}

Made MakeSimulated(const ChannelOptions& options, const std::string& settings) {
  if (!settings.empty())
    return BadText("the channel \"sim\" has no settings");
  std::optional<StoreFolder> folder;
  if (!options.sim.folder.empty()) {
    folder = StoreFolder::Open(options.sim.folder);
    if (!folder)
      return tl::unexpected(ChannelFailure{"cannot use the folder " + options.sim.folder + " for the device's files"});
  }
  return std::make_unique<SimulatedDevice>(options.sim, std::move(folder));
}

Made MakeTcp(const ChannelOptions& options, const std::string& settings) {
  const auto address = ParseTcpAddress(settings);
  if (!address)
    return BadText(Quoted(options.text) + ": " + address.error());
  return std::make_unique<StreamChannel>("TCP connection to " + address->Text(), "raw bytes", MakeTcpLink(*address));
}

Made MakeSerial(const ChannelOptions& options, const std::string& settings) {
  const auto line = ParseSerialLine(settings);
  if (!line)
    return BadText(Quoted(options.text) + ": " + line.error());
  return std::make_unique<StreamChannel>("Serial port " + line->port, line->Settings(), MakeSerialLink(*line));
}

Made MakeReplay(const ChannelOptions& options, const std::string& settings) {
  const ReplaySettings replay = ParseReplaySettings(settings);
  if (replay.file.empty())
    return BadText(Quoted(options.text) + ": expected " + std::string(kReplayForm));
  auto channel = ReplayChannel::Open(replay);
  if (!channel)
    return tl::unexpected(ChannelFailure{channel.error()});
  return std::move(*channel);
}

// The only list of kinds: how users write one, and how it is made from the settings behind its name and colon.
struct ChannelKind {
  std::string_view form;
  Made (*make)(const ChannelOptions& options, const std::string& settings);

  std::string_view Name() const { return form.substr(0, form.find(':')); }
};
constexpr ChannelKind kKinds[] = {
    {"sim", MakeSimulated}, {kTcpForm, MakeTcp}, {kSerialForm, MakeSerial}, {kReplayForm, MakeReplay}};

Made MakeSource(const ChannelOptions& options) {
  const std::size_t colon = options.text.find(':');
  const std::string name = options.text.substr(0, colon);
  const std::string settings = colon == std::string::npos ? std::string() : options.text.substr(colon + 1);
  for (const ChannelKind& kind : kKinds) {
    if (name == kind.Name())
      return kind.make(options, settings);
  }
  return BadText("unknown channel " + Quoted(options.text) + "; there are: " + ChannelForms());
}

} // namespace

std::string ChannelForms() {
  std::string forms;
  for (const ChannelKind& kind : kKinds)
    forms.append(forms.empty() ? "" : ", ").append(kind.form);
  return forms;
}

Made MakeChannel(const ChannelOptions& options) {
  Made made = MakeSource(options);
  if (!made)
    return made;
  made = std::make_unique<LockingChannel>(std::move(*made));
  if (!options.faults.empty())
    made = std::make_unique<FaultyChannel>(std::move(*made), options.faults);
  return made;
}

} // namespace host
