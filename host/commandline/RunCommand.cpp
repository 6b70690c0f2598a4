#include "host/commandline/RunCommand.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/ExpectedVariables.h"
#include "host/commandline/OpenChannel.h"
#include "host/commandline/RunSession.h"
#include "host/report/Verdict.h"
#include "host/support/Files.h"

#include <algorithm>

namespace host {
namespace {

// The script when it comes from the command line or standard input. Otherwise the process's exit code; what is wrong
// has been told.
tl::expected<std::optional<std::string>, int> ReadScript(std::string_view program, const RunArguments& arguments) {
  const std::vector<std::string>& scripts = arguments.scripts;
  if (arguments.text || std::find(scripts.begin(), scripts.end(), "-") == scripts.end())
    return arguments.text;
  ReadResult text = ReadStandardInput();
  if (!text && text.error() == ReadFailure::kTooLarge) {
    PrintMessage(program, "standard input is too long for a script: 4 GiB or more");
    return tl::unexpected<int>(EONX_ERR_OUT_OF_MEMORY);
  }
  if (!text) {
    PrintMessage(program, "standard input cannot be read");
    return tl::unexpected<int>(kExitStream);
  }
  if (text->find('\0') != std::string::npos) { // the module's contract takes texts up to the first one
    PrintMessage(program, "standard input has a zero byte; a script with one must be run from a file");
    return tl::unexpected<int>(kExitStream);
  }
  return std::move(*text);
}

// Whether every script gets the variables that it says it expects; what is wrong has been told. Before anything runs: a
// wrong call shall do nothing to a device.
bool HasExpectedVariables(std::string_view program, const RunArguments& arguments, const std::string& input) {
  bool has = true;
  for (const std::string& script : arguments.scripts) {
    const std::string misfit = MisfitOf(ReadExpectedVariablesOf(script, input), arguments.variables);
    if (!misfit.empty())
      PrintMessage(program, (script == "-" ? "<stdin>" : script) + ": " + misfit);
    has &= misfit.empty();
  }
  return has;
}

SessionRecord NewRecord(std::string_view program, const RunArguments& arguments) {
  SessionRecord session;
  session.program = program;
  session.channel = arguments.channel.text;
  session.begun = std::chrono::system_clock::now();
  for (const std::string& script : arguments.scripts)
    session.scripts.emplace_back().script = script;
  return session;
}

// Returns the process's exit code.
int Finish(std::string_view program, const RunArguments& arguments, SessionRecord& session, RunReports& reports) {
  session.code = CodeOf(session.scripts);
  // The values are results: who waits for them must not take an old file for the new one.
  if (!arguments.getFile.empty() && !WriteWholeFile(arguments.getFile, MakeValuesFile(session))) {
    PrintMessage(program, arguments.getFile + ": the values cannot be written");
    session.code = kExitStream;
  }
  reports.Finish();
  return session.code;
}

} // namespace

int RunCommand(std::string_view program, const RunArguments& arguments, ScriptProcessor& processor) {
  const auto input = ReadScript(program, arguments);
  if (!input)
    return input.error();
  if (!HasExpectedVariables(program, arguments, input->value_or("")))
    return kExitUsage;
  SessionRecord record = NewRecord(program, arguments);
  TraceFork records;
  RunReports reports(record, arguments.reports, [program](const std::string& text) { PrintMessage(program, text); });
  if (!reports.Begin())
    return kExitStream;
  if (reports.AreWanted())
    records.Add(reports);
  std::unique_ptr<TraceWriter> trace;
  auto channel = OpenChannel(program, arguments.channel, arguments.trace, records, trace);
  if (!channel) {
    if (!channel.error().isTold)
      PrintMessage(program, channel.error().text);
    ScriptRecord& first = record.scripts.front();
    first.begun = record.begun;
    first.code = channel.error().code;
    first.verdict = VerdictOf(first.code);
    first.reason = channel.error().text;
  } else {
    RunSession(program, arguments, *input, processor, std::move(*channel), records, reports).RunInto(record.scripts);
  }
  return Finish(program, arguments, record, reports);
}

} // namespace host
