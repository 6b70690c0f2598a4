#include "runner/PromptCommand.h"

#include "host/channel/WatchedChannel.h"
#include "host/commandline/ChannelArguments.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/OpenChannel.h"
#include "host/commandline/RunArguments.h"
#include "host/commandline/TraceCommand.h"
#include "host/support/Files.h"
#include "host/support/StateFolder.h"
#include "runner/prompt/Prompt.h"

namespace {

int UsageError(std::string_view program, const std::string& error) {
  host::PrintMessage(program, error);
  return host::kExitUsage;
}

// Empty: there is no place for one.
std::string HistoryFile() {
  const std::string folder = host::StateFolder();
  return folder.empty() ? folder : host::PathInFolder(folder, "prompt.history");
}

std::string Greeting(std::string_view program, const std::string& channel) {
  return std::string(program) + " " OND_VERSION " on " + channel + "; \"help\" tells more, \"exit\" leaves\n";
}

} // namespace

int PromptCommand(std::string_view program, const host::CommandLine& line) {
  const auto options = host::ReadChannelOptions(line);
  if (!options)
    return UsageError(program, options.error());
  const auto variables = host::ReadVariables(line);
  if (!variables)
    return UsageError(program, variables.error());
  const auto tracePath = host::ReadTracePath(line);
  if (!tracePath)
    return UsageError(program, tracePath.error());

  host::TraceFork records;
  std::unique_ptr<host::TraceWriter> trace;
  auto opened = host::OpenChannel(program, *options, *tracePath, records, trace);
  if (!opened) {
    if (!opened.error().isTold)
      host::PrintMessage(program, opened.error().text);
    return opened.error().code;
  }
  NativeProcessor processor;
  bool hasEnded = false;
  host::WatchedChannel channel(std::move(*opened), [&](host::WatchedChannel::Left left) {
    hasEnded = true;
    if (left == host::WatchedChannel::Left::kNothing)
      processor.Stop();
  });
  processor.Connect(&channel);
  auto variableRecords = host::RecordsToSet(*variables);
  processor.SetVariables(variableRecords);

  Prompt prompt(processor, HistoryFile(), [&]() -> std::string {
    const bool ended = std::exchange(hasEnded, false);
    return ended ? options->text + ": " + channel.GetInfoString(OND_INFO_ERROR, host::kNotOpen) : std::string();
  });
  const bool shown = prompt.Run(Greeting(program, options->text));
  processor.Connect(nullptr);
  if (!shown) {
    host::PrintMessage(program, "standard output cannot be written");
    return host::kExitStream;
  }
  const std::int32_t unsent = channel.WaitUntilSent();
  if (unsent != 0)
    host::PrintMessage(program,
                       options->text + ": not everything was sent: " + channel.GetInfoString(OND_INFO_ERROR, unsent));
  return unsent == 0 ? 0 : host::kExitNoChannel;
}
