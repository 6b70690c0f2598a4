// What `run` and `check` are told beside their files.
#pragma once

#include "host/answers/AnswerFile.h"
#include "host/commandline/ChannelArguments.h"
#include "host/commandline/Variables.h"
#include "host/report/Reports.h"

#include <chrono>
#include <optional>

namespace host {

// What `run` was asked to do.
struct RunArguments {
  // Paths as typed, or "-" for standard input, once at most; one at least. With a text, its name alone.
  std::vector<std::string> scripts;
  std::optional<std::string> text; // a script from the command line itself
  ChannelOptions channel;
  std::string trace;               // a path as typed; empty: no trace is wanted
  std::vector<Variable> variables; // no two of the same name
  std::vector<std::string> gets;   // each the name of one of the variables
  std::string getFile;             // where their values go; empty: to standard output
  std::vector<std::string> failTexts;
  std::string result; // the name of a number among the variables; empty: none
  std::optional<std::chrono::milliseconds> timeout;
  std::optional<AnswerBook> answers;
  std::vector<ReportRequest> reports;
  bool keepGoing = false; // also when the channel has ended
};

// The values of `--set`. These two otherwise say what is wrong, with the name of the option.
tl::expected<std::vector<Variable>, std::string> ReadVariables(const CommandLine& line);
tl::expected<RunArguments, std::string> ReadRunArguments(const CommandLine& line);

} // namespace host
