// A command line, understood as far as the table of commands tells.
#pragma once

#include "host/commandline/CommandTable.h"

#include <tl/expected.hpp>

#include <map>
#include <vector>

namespace host {

struct CommandLine {
  Command command;
  bool isImplied = false; // no command was named, but something else, which makes it that of a script
  // By the names of the table's rows, as typed and in order; what was not said is not there. An option without an
  // argument stands with one empty text.
  std::map<std::string, std::vector<std::string>, std::less<>> values;

  bool Has(std::string_view name) const { return values.contains(name); }
  // All values of a name; none when it was not said.
  const std::vector<std::string>& All(std::string_view name) const;
  // The value of something that is said once at most.
  std::string Value(std::string_view name, std::string_view otherwise) const;
};

// Otherwise the process's exit code: help and version were printed, or what is wrong was told on standard error.
tl::expected<CommandLine, int> ParseCommandLine(std::string_view program, int argc, const char* const* argv);

} // namespace host
