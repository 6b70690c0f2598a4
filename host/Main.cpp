// The sample host's command line. Without a command it opens the windows.
#include "host/commandline/ExitCodes.h"
#include "host/commandline/PortsCommand.h"
#include "host/commandline/RunArguments.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/console/Module.h"
#include "host/console/ModuleProcessor.h"
#include "host/support/Interrupt.h"
#include "host/support/StreamSetup.h"
#include "host/windows/Program.h"

#include <cstdio>
#include <exception>
#include <new>

namespace {

constexpr const char* kProgram = "ondhost";

int UsageError(const std::string& error) {
  host::PrintMessage(kProgram, error);
  return host::kExitUsage;
}

// Null when the module cannot be used, which has been told.
std::optional<host::Module> LoadModule() {
  auto module = host::Module::Load();
  if (!module) {
    host::PrintMessage(kProgram, module.error());
    return std::nullopt;
  }
  return std::move(*module);
}

int List() {
  const auto module = LoadModule();
  if (!module)
    return host::kExitNoModule;
  host::StandardOutput output;
  for (const host::Module::Kind& kind : module->Kinds()) {
    char type[16];
    std::snprintf(type, sizeof type, "0x%04X ", static_cast<unsigned>(kind.type));
    output.Write(type + kind.name + "\n");
  }
  return host::ExitCodeOf(kProgram, output);
}

int Run(const host::CommandLine& line) {
  const auto arguments = host::ReadRunArguments(line);
  if (!arguments)
    return UsageError(arguments.error());
  const auto module = LoadModule();
  if (!module)
    return host::kExitNoModule;
  auto object = module->Create(ONX_OBJ_SCRIPT_PROCESSOR);
  if (!object) {
    host::PrintMessage(kProgram, "the module makes no Script Processor");
    return host::kExitNoModule;
  }
  host::ModuleProcessor processor(std::move(object));
  return host::RunCommand(kProgram, *arguments, processor);
}

int ShowWindows(const host::CommandLine& line) {
  const auto arguments = host::ReadWindowsArguments(line);
  return arguments ? host::RunWindows(kProgram, *arguments) : UsageError(arguments.error());
}

int Main(int argc, char** argv) {
  if (!host::PrepareStandardStreams())
    return host::kExitStream;
  const auto line = host::ParseCommandLine(kProgram, argc, argv);
  if (!line)
    return line.error();
  switch (line->command) {
  case host::Command::kList:
    return List();
  case host::Command::kRun:
    return Run(*line);
  case host::Command::kPorts:
    return host::ShowPorts(kProgram);
  case host::Command::kTraceShow:
    return host::ShowTrace(kProgram, *line);
  case host::Command::kTraceExport:
    return host::ExportTrace(kProgram, *line);
  default:
    return ShowWindows(*line);
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
