// The sample host's command line. Without a command it opens the windows.
#include "host/commandline/ExitCodes.h"
#include "host/commandline/RunArguments.h"
#include "host/commandline/StandardStreams.h"
#include "host/console/Module.h"
#include "host/console/ModuleScript.h"
#include "host/support/BinaryStreams.h"
#include "host/windows/Program.h"

#include <CLI/CLI.hpp>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>

namespace {

constexpr const char* kProgram = "ondhost";

constexpr const char* kFooter = R"(Examples:
  ondhost
  ondhost --device-dir C:\bench\device
  ondhost list
  ondhost run sweep.dcs
  ondhost run flash.dcs --device-dir C:\bench\device --set unit:string=A17
  ondhost run count.dcs --set rounds:dword=5 --set total:int64=0 --get total
  ondhost run sweep.dcs --channel tcp:192.168.1.20:4000
  ondhost run sweep.dcs --channel serial:COM3:115200:8N1
  ondhost run flash.dcs --fault TransmitFile:2=6

Without a command, the windows open, on the channel that the options describe.
A run exits with its result: 0 success, 21 the script failed or was stopped; 2 is a wrong call.)";

std::optional<host::Module> LoadModule() {
  std::string error;
  auto module = host::Module::Load(error);
  if (!module)
    host::PrintMessage(kProgram, error);
  return module;
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
  return output.Failed() ? host::kExitStream : 0;
}

int Run(const host::RunOptions& options) {
  std::string error;
  const auto arguments = options.Resolve(error);
  if (!arguments) {
    host::PrintMessage(kProgram, error);
    return host::kExitUsage;
  }
  const auto module = LoadModule();
  if (!module)
    return host::kExitNoModule;
  auto processor = module->Create(ONX_OBJ_SCRIPT_PROCESSOR);
  if (!processor) {
    host::PrintMessage(kProgram, "the module makes no Script Processor");
    return host::kExitNoModule;
  }
  host::ModuleScript machine(std::move(processor));
  return host::RunScript(kProgram, *arguments, machine);
}

int ShowWindows(const host::ChannelArguments& arguments) {
  std::string error;
  const auto options = arguments.Resolve(error);
  if (!options) {
    host::PrintMessage(kProgram, error);
    return host::kExitUsage;
  }
  return host::RunWindows(kProgram, *options);
}

bool HasOptions(const CLI::App& app) {
  const auto options = app.get_options();
  return std::any_of(options.begin(), options.end(), [](const CLI::Option* option) { return option->count() != 0; });
}

int Main(int argc, char** argv) {
  host::UseBinaryStreams();
  CLI::App app("Works with a device through OndDeviceClient.dll: with windows, or from a script.", kProgram);
  app.set_version_flag("--version", std::string(kProgram) + " " OND_VERSION);
  app.footer(kFooter);
  const host::ChannelArguments channel(app);
  CLI::App* const run = app.add_subcommand("run", "Runs a script and prints its output");
  run->footer(kFooter);
  const host::RunOptions options(*run);
  const CLI::App* const list = app.add_subcommand("list", "Prints the kinds of object that the module makes");
  if (const auto code = host::ParseCommandLine(app, argc, argv))
    return *code;
  if (!app.get_subcommands().empty() && HasOptions(app)) {
    host::PrintMessage(kProgram, "options stand behind the command; --help tells more");
    return host::kExitUsage;
  }
  if (list->parsed())
    return List();
  if (run->parsed())
    return Run(options);
  return ShowWindows(channel);
}

// For a Ctrl+C that nobody takes. Wine's own handler would end the process as if all had gone well.
BOOL WINAPI EndProcess(DWORD control) {
  if (control == CTRL_C_EVENT || control == CTRL_BREAK_EVENT)
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
  return FALSE;
}

} // namespace

int main(int argc, char** argv) {
  SetConsoleCtrlHandler(EndProcess, TRUE);
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
