#include "host/commandline/RunArguments.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/RepeatedOption.h"
#include "host/support/Text.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace host {
namespace {

const Variable* FindVariable(const std::vector<Variable>& variables, const std::string& name) {
  const auto found = std::find_if(variables.begin(), variables.end(),
                                  [&](const Variable& variable) { return EqualIgnoringCase(variable.name, name); });
  return found == variables.end() ? nullptr : &*found;
}

} // namespace

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

RunOptions::RunOptions(CLI::App& command) : m_channel(command) {
  command.add_option("FILE", m_arguments.script, "the script; - reads it from standard input")->required();
  AddSetOption(command, m_sets);
  command.add_flag("--keep-going", m_arguments.keepGoing,
                   "do not stop the script when it uses a channel that is closed for good");
  AddRepeatedOption(command, "--get", m_arguments.gets, "NAME", "print this variable of --set after the run");
}

std::optional<RunArguments> RunOptions::Resolve(std::string& error) const {
  RunArguments arguments = m_arguments;
  auto channel = m_channel.Resolve(error);
  if (!channel)
    return std::nullopt;
  arguments.channel = std::move(*channel);
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
