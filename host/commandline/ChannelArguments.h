// The options that say which device a program works with, and how a simulated one behaves.
#pragma once

#include "host/channel/factory/ChannelFactory.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

// Adds the options to a command, and makes sense of them after parsing.
class ChannelArguments {
public:
  // Must outlive the parsing.
  explicit ChannelArguments(CLI::App& command);
  ChannelArguments(const ChannelArguments&) = delete;
  ChannelArguments& operator=(const ChannelArguments&) = delete;

  // On failure nothing is returned and `error` names the argument.
  std::optional<ChannelOptions> Resolve(std::string& error) const;

private:
  ChannelOptions m_options; // what needs no second look
  std::vector<std::string> m_faults;
  unsigned m_blockTime = 0; // ms
};

} // namespace host
