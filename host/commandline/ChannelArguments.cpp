#include "host/commandline/ChannelArguments.h"

#include "host/commandline/RepeatedOption.h"

#include <CLI/CLI.hpp>

namespace host {
namespace {

constexpr unsigned kLongestBlockTime = 60000; // ms

} // namespace

ChannelArguments::ChannelArguments(CLI::App& command) {
  command.add_option("--channel", m_options.text, "the device: " + ChannelForms())->capture_default_str();
  command.add_option("--device-dir", m_options.sim.folder, "folder in which the simulated device keeps its files")
      ->check([](const std::string& folder) { return folder.empty() ? "the folder has no name" : ""; });
  AddRepeatedOption(command, "--fault", m_faults, "OPERATION[:N]=CODE",
                    "the N-th call (without N: every call) of a channel operation answers CODE");
  command
      .add_option("--block-time", m_blockTime, "milliseconds that the simulated device takes for a block of 512 bytes")
      ->check(CLI::Range(0U, kLongestBlockTime));
}

std::optional<ChannelOptions> ChannelArguments::Resolve(std::string& error) const {
  ChannelOptions options = m_options;
  options.sim.blockTime = std::chrono::milliseconds(m_blockTime);
  for (const std::string& text : m_faults) {
    const auto fault = ParseFault(text);
    if (!fault) {
      error = "--fault " + text + ": " + fault.error();
      return std::nullopt;
    }
    options.faults.push_back(*fault);
  }
  return options;
}

} // namespace host
