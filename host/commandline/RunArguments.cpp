#include "host/commandline/RunArguments.h"

#include "host/support/Text.h"

#include <algorithm>

namespace host {
namespace {

bool HasVariable(const std::vector<Variable>& variables, const std::string& name) {
  return std::any_of(variables.begin(), variables.end(),
                     [&](const Variable& variable) { return EqualIgnoringCase(variable.name, name); });
}

} // namespace

tl::expected<std::vector<Variable>, std::string> ReadVariables(const CommandLine& line) {
  std::vector<Variable> variables;
  for (const std::string& text : line.All("--set")) {
    auto variable = ParseVariable(text);
    if (!variable)
      return tl::unexpected("--set " + text + ": " + variable.error());
    if (HasVariable(variables, variable->name))
      return tl::unexpected("--set " + text + ": the variable is set twice");
    variables.push_back(std::move(*variable));
  }
  return variables;
}

tl::expected<RunArguments, std::string> ReadRunArguments(const CommandLine& line) {
  RunArguments arguments;
  arguments.script = line.Value("FILE", "");
  auto channel = ReadChannelOptions(line);
  if (!channel)
    return tl::unexpected(channel.error());
  arguments.channel = std::move(*channel);
  auto variables = ReadVariables(line);
  if (!variables)
    return tl::unexpected(variables.error());
  arguments.variables = std::move(*variables);
  arguments.trace = line.Value("--trace", "");
  if (line.Has("--trace") && arguments.trace.empty())
    return tl::unexpected<std::string>("--trace: the file has no name");
  arguments.keepGoing = line.Has("--keep-going");
  arguments.gets = line.All("--get");
  for (const std::string& name : arguments.gets) {
    if (!HasVariable(arguments.variables, name))
      return tl::unexpected("--get " + name + ": no --set gives this variable");
  }
  return arguments;
}

} // namespace host
