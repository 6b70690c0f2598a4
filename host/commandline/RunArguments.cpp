#include "host/commandline/RunArguments.h"

#include "host/commandline/ExitCodes.h"
#include "host/support/Text.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace host {
namespace {

constexpr unsigned kLongestBlockTime = 60000; // ms

const Variable* FindVariable(const std::vector<Variable>& variables, const std::string& name) {
  const auto found = std::find_if(variables.begin(), variables.end(),
                                  [&](const Variable& variable) { return EqualIgnoringCase(variable.name, name); });
  return found == variables.end() ? nullptr : &*found;
}

} // namespace

void AddRepeatedOption(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                       const std::string& form, const std::string& description) {
  // The library's own lists of texts would take several values at once and give "[...]" and "{}" a meaning.
  command
      .add_option(
          name,
          [&values](const CLI::results_t& results) {
            values = results;
            return true;
          },
          description)
      ->type_name(form)
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void AddSetOption(CLI::App& command, std::vector<std::string>& values) {
  AddRepeatedOption(command, "--set", values, "NAME:TYPE=VALUE",
                    "a variable for the script (dword, uint32, string, long, int32, uint64, int64)");
}

std::optional<std::vector<Variable>> ParseVariables(const std::vector<std::string>& sets, std::string& error) {
  std::vector<Variable> variables;
  for (const std::string& text : sets) {
    auto variable = ParseVariable(text, error);
    if (variable && FindVariable(variables, variable->name) != nullptr) {
      error = "the variable is set twice";
      variable.reset();
    }
    if (!variable) {
      error = "--set " + text + ": " + error;
      return std::nullopt;
    }
    variables.push_back(std::move(*variable));
  }
  return variables;
}

RunOptions::RunOptions(CLI::App& command) {
  command.add_option("FILE", m_arguments.script, "the script; - reads it from standard input")->required();
  command.add_option("--channel", m_arguments.channel.text, std::string("the device: ") + kChannelForms)
      ->capture_default_str();
  AddSetOption(command, m_sets);
  AddRepeatedOption(command, "--get", m_arguments.gets, "NAME", "print this variable of --set after the run");
  command.add_option("--device-dir", m_arguments.channel.sim.folder,
                     "folder in which the simulated device keeps its files");
  AddRepeatedOption(command, "--fault", m_faults, "OPERATION[:N]=CODE",
                    "the N-th call (without N: every call) of a channel operation answers CODE");
  command
      .add_option("--block-time", m_blockTime, "milliseconds that the simulated device takes for a block of 512 bytes")
      ->check(CLI::Range(0U, kLongestBlockTime));
}

std::optional<RunArguments> RunOptions::Resolve(std::string& error) const {
  RunArguments arguments = m_arguments;
  arguments.channel.sim.blockTime = std::chrono::milliseconds(m_blockTime);
  auto variables = ParseVariables(m_sets, error);
  if (!variables)
    return std::nullopt;
  arguments.variables = std::move(*variables);
  for (const std::string& name : arguments.gets) {
    if (FindVariable(arguments.variables, name) == nullptr) {
      error = "--get " + name + ": no --set gives this variable";
      return std::nullopt;
    }
  }
  for (const std::string& text : m_faults) {
    const auto fault = ParseFault(text, error);
    if (!fault) {
      error = "--fault " + text + ": " + error;
      return std::nullopt;
    }
    arguments.channel.faults.push_back(*fault);
  }
  return arguments;
}

std::optional<int> ParseCommandLine(CLI::App& app, int argc, char** argv) {
  // A script at "/bench/a.dcs" is a path under Windows too (Wine, and every program that takes forward slashes).
  app.allow_windows_style_options(false);
  for (CLI::App* command : app.get_subcommands({}))
    command->allow_windows_style_options(false);
  app.failure_message([](const CLI::App* failed, const CLI::Error& error) {
    return failed->get_name() + ": " + error.what() + "; --help tells more\n";
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kExitUsage;
  }
  return std::nullopt;
}

} // namespace host
