// The runner's command line.
#include "host/commandline/ExitCodes.h"
#include "host/commandline/PortsCommand.h"
#include "host/commandline/RunArguments.h"
#include "host/commandline/RunCommand.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/support/Interrupt.h"
#include "host/support/StreamSetup.h"
#include "host/talk/SendCommand.h"
#include "host/talk/TermCommand.h"
#include "runner/CheckCommand.h"
#include "runner/NativeProcessor.h"
#include "runner/PromptCommand.h"
#include "runner/StandardInput.h"
#include "runner/describe/Descriptions.h"
#include "util/EscapedString.h"

#include <algorithm>
#include <exception>
#include <new>

namespace {

constexpr const char* kProgram = "ondscript";

int UsageError(const std::string& error) {
  host::PrintMessage(kProgram, error);
  return host::kExitUsage;
}

int Run(const host::CommandLine& line) {
  const auto arguments = host::ReadRunArguments(line);
  if (!arguments)
    return UsageError(arguments.error());
  NativeProcessor processor;
  return host::RunCommand(kProgram, *arguments, processor);
}

int Print(const std::string& text) {
  host::StandardOutput output;
  output.Write(text);
  return host::ExitCodeOf(kProgram, output);
}

int Complete(const std::string& shell) {
  if (shell == "bash")
    return Print(BashCompletion(kProgram));
  if (shell == "zsh")
    return Print(ZshCompletion(kProgram));
  if (shell == "fish")
    return Print(FishCompletion(kProgram));
  return UsageError("SHELL " + shell + ": there are bash, zsh, fish");
}

// Whether somebody at a terminal has named nothing to be done, but at most the prompt's options.
bool WantsPrompt(const host::CommandLine& line) {
  const auto isOfPrompt = [](const auto& value) {
    const auto options = host::Options();
    return std::any_of(options.begin(), options.end(), [&](const host::OptionRow& row) {
      return row.name == value.first && row.IsOf(host::Command::kPrompt);
    });
  };
  return (line.isImplied || line.command == host::Command::kHelp) && IsInputTerminal() &&
         std::all_of(line.values.begin(), line.values.end(), isOfPrompt);
}

int Check(const host::CommandLine& line) {
  const auto variables = host::ReadVariables(line);
  if (!variables)
    return UsageError(variables.error());
  std::vector<std::string> names;
  for (const host::Variable& variable : *variables)
    names.push_back(variable.name);
  return CheckFiles(kProgram, line.All("FILE"), names);
}

tl::expected<std::string, std::string> Unescape(const std::string& text) {
  std::string error;
  int ok = 0;
  std::string bytes = ParseString(text.c_str(), text.size(), '\0', nullptr, &error, &ok);
  if (!ok)
    return tl::unexpected(error);
  return bytes;
}

int Main(int argc, char** argv) {
  if (!host::PrepareStandardStreams())
    return host::kExitStream;
  const auto line = host::ParseCommandLine(kProgram, argc, argv);
  if (!line)
    return line.error();
  if (WantsPrompt(*line))
    return PromptCommand(kProgram, *line);
  switch (line->command) {
  case host::Command::kRun:
    return Run(*line);
  case host::Command::kPrompt:
    return PromptCommand(kProgram, *line);
  case host::Command::kCompletion:
    return Complete(line->Value("SHELL", ""));
  case host::Command::kManual:
    return Print(ManualPage(kProgram));
  case host::Command::kCheck:
    return Check(*line);
  case host::Command::kSend:
    return host::SendCommand(kProgram, *line, Unescape);
  case host::Command::kTerm:
    return host::TermCommand(kProgram, *line, Unescape);
  case host::Command::kPorts:
    return host::ShowPorts(kProgram);
  case host::Command::kTraceShow:
    return host::ShowTrace(kProgram, *line);
  case host::Command::kTraceExport:
    return host::ExportTrace(kProgram, *line);
  default:
    return UsageError("a script or a command is missing; --help tells more");
  }
}

} // namespace

int main(int argc, char** argv) {
  host::LetInterruptsEndProcess();
  try {
    return Main(argc, argv);
  } catch (const std::bad_alloc&) {
    host::PrintMessage(kProgram, "out of memory");
    return EONX_ERR_OUT_OF_MEMORY;
  } catch (const std::exception& error) {
    host::PrintMessage(kProgram, error.what());
    return EONX_ERR_OUT_OF_MEMORY;
  }
}
