// The options that both command lines share.
#pragma once

#include "host/commandline/ChannelArguments.h"
#include "host/commandline/Variables.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

// What `run` was asked to do.
struct RunArguments {
  std::string script; // a path as typed, or "-" for standard input
  ChannelOptions channel;
  std::vector<Variable> variables; // no two of the same name
  std::vector<std::string> gets;   // each the name of one of the variables
  bool keepGoing = false;          // also when the channel has ended
};

// `--set`.
void AddSetOption(CLI::App& command, std::vector<std::string>& values);

// Reads the values of `--set`. On failure nothing is returned and `error` names the argument.
std::optional<std::vector<Variable>> ParseVariables(const std::vector<std::string>& sets, std::string& error);

// The options of `run`: adds them to a command, and makes sense of them after parsing.
class RunOptions {
public:
  // Must outlive the parsing.
  explicit RunOptions(CLI::App& command);
  RunOptions(const RunOptions&) = delete;
  RunOptions& operator=(const RunOptions&) = delete;

  // On failure nothing is returned and `error` names the argument.
  std::optional<RunArguments> Resolve(std::string& error) const;

private:
  ChannelArguments m_channel;
  RunArguments m_arguments; // what needs no second look
  std::vector<std::string> m_sets;
};

// Parses a command line. Nothing: go on; otherwise the process's exit code (help, version, usage error).
std::optional<int> ParseCommandLine(CLI::App& app, int argc, char** argv);

} // namespace host
