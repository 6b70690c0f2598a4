#include "host/commandline/RunArguments.h"

#include "host/commandline/Seconds.h"
#include "host/commandline/TraceCommand.h"
#include "host/support/Files.h"
#include "host/support/Text.h"

#include <algorithm>

namespace host {
namespace {

constexpr const char* kTextName = "<command line>"; // in messages and reports

// Otherwise null.
const Variable* FindVariable(const std::vector<Variable>& variables, const std::string& name) {
  const auto found = std::find_if(variables.begin(), variables.end(),
                                  [&](const Variable& variable) { return EqualIgnoringCase(variable.name, name); });
  return found != variables.end() ? &*found : nullptr;
}

// These read an option into the arguments; what is wrong, with the name of the option, or nothing when all is well.

std::string ReadScripts(const CommandLine& line, RunArguments& arguments) {
  arguments.scripts = line.All("FILE");
  if (line.Has("-e")) {
    if (line.Has("FILE"))
      return "-e and FILE: a call runs one or the other";
    arguments.scripts = {kTextName};
    arguments.text.emplace();
    for (const std::string& text : line.All("-e"))
      *arguments.text += text + '\n';
  }
  if (arguments.scripts.empty())
    return "FILE is required; --help tells more";
  if (std::count(arguments.scripts.begin(), arguments.scripts.end(), "-") > 1)
    return "FILE: standard input is one script only";
  return {};
}

std::string ReadGets(const CommandLine& line, RunArguments& arguments) {
  arguments.gets = line.All("--get");
  for (const std::string& name : arguments.gets) {
    if (!FindVariable(arguments.variables, name))
      return "--get " + name + ": no --set gives this variable";
  }
  arguments.getFile = line.Value("--get-file", "");
  if (!line.Has("--get-file"))
    return {};
  if (arguments.gets.empty()) {
    for (const Variable& variable : arguments.variables)
      arguments.gets.push_back(variable.name);
  }
  return CanWriteFile(arguments.getFile) ? "" : "--get-file " + arguments.getFile + ": the file cannot be written";
}

std::string ReadVerdicts(const CommandLine& line, RunArguments& arguments) {
  arguments.failTexts = line.All("--fail-on");
  if (std::find(arguments.failTexts.begin(), arguments.failTexts.end(), "") != arguments.failTexts.end())
    return "--fail-on: the text is empty, which every line contains";
  arguments.result = line.Value("--result", "");
  if (!line.Has("--result"))
    return {};
  const Variable* const variable = FindVariable(arguments.variables, arguments.result);
  if (!variable)
    return "--result " + arguments.result + ": no --set gives this variable";
  if (variable->type == ONX_TYPE_STRING)
    return "--result " + arguments.result + ": the variable must be a number";
  return {};
}

std::string ReadTimeout(const CommandLine& line, RunArguments& arguments) {
  const auto timeout = ReadSeconds(line, "--timeout");
  if (!timeout)
    return timeout.error();
  arguments.timeout = *timeout;
  return {};
}

std::string ReadAnswers(const CommandLine& line, RunArguments& arguments) {
  if (!line.Has("--answers"))
    return {};
  auto answers = AnswerBook::Read(line.Value("--answers", ""));
  if (!answers)
    return "--answers " + answers.error();
  arguments.answers = std::move(*answers);
  return {};
}

std::string ReadReports(const CommandLine& line, RunArguments& arguments) {
  for (const std::string& text : line.All("--report")) {
    auto report = ParseReport(text);
    if (!report)
      return "--report " + text + ": " + report.error();
    // To be known now, not after an hour's run.
    if (!CanWriteFile(report->path))
      return "--report " + text + ": the file cannot be written";
    arguments.reports.push_back(std::move(*report));
  }
  return {};
}

} // namespace

tl::expected<std::vector<Variable>, std::string> ReadVariables(const CommandLine& line) {
  std::vector<Variable> variables;
  for (const std::string& text : line.All("--set")) {
    auto variable = ParseVariable(text);
    if (!variable)
      return tl::unexpected("--set " + text + ": " + variable.error());
    if (FindVariable(variables, variable->name))
      return tl::unexpected("--set " + text + ": the variable is set twice");
    variables.push_back(std::move(*variable));
  }
  return variables;
}

tl::expected<RunArguments, std::string> ReadRunArguments(const CommandLine& line) {
  RunArguments arguments;
  auto channel = ReadChannelOptions(line);
  if (!channel)
    return tl::unexpected(channel.error());
  arguments.channel = std::move(*channel);
  auto variables = ReadVariables(line);
  if (!variables)
    return tl::unexpected(variables.error());
  arguments.variables = std::move(*variables);
  auto trace = ReadTracePath(line);
  if (!trace)
    return tl::unexpected(trace.error());
  arguments.trace = std::move(*trace);
  arguments.keepGoing = line.Has("--keep-going");
  for (const auto read : {ReadScripts, ReadGets, ReadVerdicts, ReadTimeout, ReadAnswers, ReadReports}) {
    if (std::string mistake = read(line, arguments); !mistake.empty())
      return tl::unexpected(std::move(mistake));
  }
  return arguments;
}

} // namespace host
