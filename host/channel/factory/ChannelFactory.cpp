#include "host/channel/factory/ChannelFactory.h"

#include "host/channel/LockingChannel.h"
#include "host/channel/replay/ReplayChannel.h"
#include "host/channel/sim/description/DescribedDevice.h"
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

Made MakeSimulated(ChannelOptions& options, const std::string& settings) {
  const bool isDescribed = options.text.find(':') != std::string::npos;
  auto parts = isDescribed ? DescribedParts(settings, options.sim, options.faults) : BuiltInParts(options.sim);
  if (!parts)
    return tl::unexpected(ChannelFailure{parts.error().text, parts.error().inText});
  return std::make_unique<SimulatedDevice>(std::move(*parts));
}

// ",a,b" as part of a sentence.
std::string Shown(const std::string& optionText) {
  std::string shown;
  for (const char c : optionText)
    shown.append(c == ',' ? ", " : std::string(1, c));
  return shown;
}

Made MakeTcp(ChannelOptions& options, const std::string& settings) {
  const auto [form, optionText] = SplitLineOptions(settings);
  const auto address = ParseTcpAddress(form);
  if (!address)
    return BadText(Quoted(options.text) + ": " + address.error());
  const auto line = ParseLineOptions(LineKind::kTcp, optionText);
  if (!line)
    return BadText(Quoted(options.text) + ": " + line.error());
  return std::make_unique<StreamChannel>(
      "TCP connection to " + address->Text(), "raw bytes" + Shown(optionText),
      [address = *address](Signal& wake) { return MakeTcpLink(address, wake); }, *line);
}

Made MakeSerial(ChannelOptions& options, const std::string& settings) {
  const auto [form, optionText] = SplitLineOptions(settings);
  const auto port = ParseSerialLine(form);
  if (!port)
    return BadText(Quoted(options.text) + ": " + port.error());
  auto line = ParseLineOptions(LineKind::kSerial, optionText);
  if (!line)
    return BadText(Quoted(options.text) + ": " + line.error());
  line->pace.characterTime = port->CharacterTime();
  return std::make_unique<StreamChannel>(
      "Serial port " + port->port, port->Settings() + Shown(optionText),
      [port = *port, how = line->serial](Signal& wake) { return MakeSerialLink(port, how, wake); }, *line);
}

Made MakeReplay(ChannelOptions& options, const std::string& settings) {
  const ReplaySettings replay = ParseReplaySettings(settings);
  if (replay.file.empty())
    return BadText(Quoted(options.text) + ": expected " + std::string(kReplayForm));
  auto channel = ReplayChannel::Open(replay);
  if (!channel)
    return tl::unexpected(ChannelFailure{channel.error()});
  return std::move(*channel);
}

// The only list of kinds: how users write one, and how it is made from the settings behind its name and colon. A device
// may bring faults of its own, which come behind those that were asked for.
struct ChannelKind {
  std::string_view form;
  Made (*make)(ChannelOptions& options, const std::string& settings);

  std::string_view Name() const { return form.substr(0, form.find_first_of(":[")); }
};
constexpr ChannelKind kKinds[] = {
    {kSimForm, MakeSimulated}, {kTcpForm, MakeTcp}, {kSerialForm, MakeSerial}, {kReplayForm, MakeReplay}};

Made MakeSource(ChannelOptions& options) {
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

std::string ChannelFormsWithOptions() {
  return ChannelForms() + "; behind tcp, each with a comma, " + LineOptionForms(LineKind::kTcp) + "; behind serial " +
         LineOptionForms(LineKind::kSerial);
}

Made MakeChannel(const ChannelOptions& wanted) {
  ChannelOptions options = wanted;
  Made made = MakeSource(options);
  if (!made)
    return made;
  made = std::make_unique<LockingChannel>(std::move(*made));
  if (!options.faults.empty())
    made = std::make_unique<FaultyChannel>(std::move(*made), options.faults);
  return made;
}

} // namespace host
