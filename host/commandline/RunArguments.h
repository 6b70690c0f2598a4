// What `run` and `check` are told beside their files.
#pragma once

#include "host/commandline/ChannelArguments.h"
#include "host/commandline/Variables.h"

namespace host {

// What `run` was asked to do.
struct RunArguments {
  std::string script; // a path as typed, or "-" for standard input
  ChannelOptions channel;
  std::string trace;               // a path as typed; empty: no trace is wanted
  std::vector<Variable> variables; // no two of the same name
  std::vector<std::string> gets;   // each the name of one of the variables
  bool keepGoing = false;          // also when the channel has ended
};

// The values of `--set`. These two otherwise say what is wrong, with the name of the option.
tl::expected<std::vector<Variable>, std::string> ReadVariables(const CommandLine& line);
tl::expected<RunArguments, std::string> ReadRunArguments(const CommandLine& line);

} // namespace host
