#include "host/commandline/ChannelArguments.h"

#include "host/support/Text.h"

namespace host {
namespace {

constexpr unsigned kLongestBlockTime = 60000; // ms

tl::expected<std::chrono::milliseconds, std::string> ReadBlockTime(const std::string& text) {
  unsigned time = 0;
  if (!ParseNumber(text, time) || time > kLongestBlockTime)
    return tl::unexpected("--block-time " + text + ": expected milliseconds, 0 to " +
                          std::to_string(kLongestBlockTime));
  return std::chrono::milliseconds(time);
}

} // namespace

tl::expected<ChannelOptions, std::string> ReadChannelOptions(const CommandLine& line) {
  ChannelOptions options;
  options.text = line.Value("--channel", options.text);
  options.sim.folder = line.Value("--device-dir", "");
  if (line.Has("--device-dir") && options.sim.folder.empty())
    return tl::unexpected<std::string>("--device-dir: the folder has no name");
  if (line.Has("--block-time")) {
    const auto blockTime = ReadBlockTime(line.Value("--block-time", ""));
    if (!blockTime)
      return tl::unexpected(blockTime.error());
    options.sim.blockTime = *blockTime;
  }
  for (const std::string& text : line.All("--fault")) {
    const auto fault = ParseFault(text);
    if (!fault)
      return tl::unexpected("--fault " + text + ": " + fault.error());
    options.faults.push_back(*fault);
  }
  return options;
}

} // namespace host
