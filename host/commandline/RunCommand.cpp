#include "host/commandline/RunCommand.h"

#include "host/channel/ChannelErrors.h"
#include "host/channel/WatchedChannel.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/InterruptWatcher.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"

namespace host {
namespace {

// Connected as long as it exists.
class Connection {
public:
  Connection(ScriptMachine& machine, Channel& channel) : m_machine(machine) { m_machine.Connect(&channel); }
  ~Connection() { m_machine.Connect(nullptr); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

private:
  ScriptMachine& m_machine;
};

struct OutputContext {
  StandardOutput& output;
  ScriptMachine& machine;
  bool aborted = false; // the last piece is the diagnostic of a script that was stopped
};

void PrintOutput(void* context, const char* text) {
  auto& target = *static_cast<OutputContext*>(context);
  target.aborted = std::string_view(text).starts_with("Processing aborted");
  if (!target.output.Write(text))
    target.machine.Stop(); // nobody could see what the script does
}

struct RunEnd {
  EONX_ERR_ERRCODE_ result;
  bool interrupted;
  bool stopped; // by whatever asked for it; otherwise a script that failed did so by itself
};

// `text` is the script when it came from standard input.
RunEnd Run(const RunArguments& arguments, const std::optional<std::string>& text, ScriptMachine& machine,
           StandardOutput& output) {
  OutputContext context{output, machine};
  const InterruptWatcher watcher([&machine] { machine.Stop(); });
  const EONX_ERR_ERRCODE_ result = text ? machine.Execute(*text, PrintOutput, &context)
                                        : machine.ExecuteFile(ScriptPath(arguments.script), PrintOutput, &context);
  return {result, watcher.Interrupted(), result == EONX_ERR_SCRIPT && context.aborted};
}

void PrintValues(const std::vector<std::string>& names, ScriptMachine& machine, StandardOutput& output) {
  if (!names.empty() && !output.AtLineStart())
    output.Write("\n"); // so that every value has a line of its own
  for (const std::string& name : names) {
    std::vector<TONXSCRIPTVARIABLE> records{RecordToGet(name)};
    if (machine.GetVariables(records) != 0)
      output.Write(name + "=" + FormatValue(records.front()) + "\n");
  }
}

void PrintRunEnd(std::string_view program, const std::string& script, const RunEnd& end) {
  const char* text = ResultText(end.result);
  if (end.interrupted && end.result == EONX_ERR_SCRIPT)
    text = "stopped by Ctrl+C";
  else if (end.stopped)
    text = "stopped, because the channel has ended";
  else if (end.interrupted && end.result == EONX_ERR_NONE)
    text = "Ctrl+C was pressed, and the script went on to its end";
  if (text != nullptr)
    PrintMessage(program, script.empty() ? text : script + ": " + text);
}

std::string ErrorText(Channel& channel, std::int32_t code) {
  return channel.GetInfoString(OND_INFO_ERROR, code);
}

// Tells what is wrong with the channel after a run; `ended`: the script went on using it after its end. Returns the
// process's exit code.
int ConcludeChannel(std::string_view program, const std::string& name, const RunEnd& end, bool ended,
                    Channel& channel) {
  // A script that its user stopped does not wait for its device.
  if (end.interrupted && end.result != EONX_ERR_NONE)
    return end.result;
  const std::int32_t unsent = channel.WaitUntilSent();
  if (unsent != 0)
    PrintMessage(program, name + ": not everything was sent: " + ErrorText(channel, unsent));
  else if (ended)
    PrintMessage(program, name + ": " + ErrorText(channel, kNotOpen));
  const bool failedByItself = end.result != EONX_ERR_NONE && !end.stopped;
  return (ended || unsent != 0) && !failedByItself ? static_cast<int>(kExitNoChannel) : end.result;
}

} // namespace

int RunScript(std::string_view program, const RunArguments& arguments, ScriptMachine& machine) {
  std::optional<std::string> text;
  if (arguments.script == "-") {
    switch (ReadStandardInput(text.emplace())) {
    case ReadOutcome::kFailed:
      PrintMessage(program, "standard input cannot be read");
      return kExitStream;
    case ReadOutcome::kTooLarge:
      PrintMessage(program, "standard input is too long for a script: 4 GiB or more");
      return EONX_ERR_OUT_OF_MEMORY;
    case ReadOutcome::kComplete:
      break;
    }
  }
  if (text && text->find('\0') != std::string::npos) { // the module's contract takes texts up to the first one
    PrintMessage(program, "standard input has a zero byte; a script with one must be run from a file");
    return kExitStream;
  }
  auto made = MakeChannel(arguments.channel);
  if (!made) {
    const ChannelFailure& failure = made.error();
    PrintMessage(program, failure.badText ? "--channel: " + failure.text : failure.text);
    return failure.badText ? kExitUsage : kExitNoChannel;
  }
  bool channelEnded = false;
  WatchedChannel channel(std::move(*made), [&] {
    channelEnded = true;
    if (!arguments.keepGoing)
      machine.Stop();
  });
  if (const std::int32_t code = channel.WaitUntilOpen(); code != 0) {
    PrintMessage(program, arguments.channel.text + ": " + ErrorText(channel, code));
    return kExitNoChannel;
  }
  const Connection connection(machine, channel);
  auto records = RecordsToSet(arguments.variables);
  if (const EONX_ERR_ERRCODE_ result = machine.SetVariables(records); result != EONX_ERR_NONE) {
    PrintMessage(program, ResultText(result));
    return result;
  }

  StandardOutput output;
  const RunEnd end = Run(arguments, text, machine, output);
  const bool stoppedForOutput = output.Failed();
  PrintValues(arguments.gets, machine, output);
  if (!stoppedForOutput)
    PrintRunEnd(program, arguments.script, end);
  if (output.Failed()) {
    PrintMessage(program, "standard output cannot be written");
    return kExitStream;
  }
  return ConcludeChannel(program, arguments.channel.text, end, channelEnded, channel);
}

} // namespace host
