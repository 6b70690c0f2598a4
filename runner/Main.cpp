// The native runner's command line.
#include "host/commandline/ExitCodes.h"
#include "host/commandline/RunArguments.h"
#include "host/commandline/RunCommand.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/BinaryStreams.h"
#include "runner/CheckCommand.h"
#include "runner/RunnerScript.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <new>

namespace {

constexpr const char* kProgram = "ondscript";

constexpr const char* kFooter = R"(Examples:
  ondscript run sweep.dcs
  echo 'print("hello\n");' | ondscript run -
  ondscript run flash.dcs --device-dir /tmp/device --set unit:string=A17
  ondscript run count.dcs --set rounds:dword=5 --set total:int64=0 --get total
  ondscript run sweep.dcs --channel tcp:192.168.1.20:4000
  ondscript run sweep.dcs --channel serial:/dev/ttyUSB0:115200:8N1
  ondscript run flash.dcs --fault TransmitFile:2=6
  ondscript check *.dcs

A run exits with its result: 0 success, 21 the script failed or was stopped. A check exits with 1 when it
finds a problem. 2 is a wrong call.)";

int UsageError(const std::string& error) {
  host::PrintMessage(kProgram, error);
  return host::kExitUsage;
}

int Run(const host::RunOptions& options) {
  std::string error;
  const auto arguments = options.Resolve(error);
  if (!arguments)
    return UsageError(error);
  RunnerScript machine;
  return host::RunScript(kProgram, *arguments, machine);
}

int Check(const std::vector<std::string>& files, const std::vector<std::string>& sets) {
  std::string error;
  const auto variables = host::ParseVariables(sets, error);
  if (!variables)
    return UsageError(error);
  std::vector<std::string> names;
  for (const host::Variable& variable : *variables)
    names.push_back(variable.name);
  return CheckFiles(kProgram, files, names);
}

int Main(int argc, char** argv) {
  host::UseBinaryStreams();
  CLI::App app("Runs and checks device scripts.", kProgram);
  app.set_version_flag("--version", std::string(kProgram) + " " OND_VERSION);
  app.footer(kFooter);

  CLI::App* const run = app.add_subcommand("run", "Runs a script and prints its output");
  run->footer(kFooter);
  const host::RunOptions options(*run);

  CLI::App* const check =
      app.add_subcommand("check", "Prints the first problem of each script as FILE:LINE:COLUMN: error: TEXT");
  check->footer(kFooter);
  std::vector<std::string> files;
  std::vector<std::string> sets;
  check->add_option("FILE", files, "the scripts; - reads standard input")->required();
  host::AddSetOption(*check, sets);

  if (const auto code = host::ParseCommandLine(app, argc, argv))
    return *code;
  if (check->parsed())
    return Check(files, sets);
  if (run->parsed())
    return Run(options);
  std::fputs(app.help().c_str(), stderr);
  return host::kExitUsage;
}

} // namespace

int main(int argc, char** argv) {
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
