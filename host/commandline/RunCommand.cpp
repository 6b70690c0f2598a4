#include "host/commandline/RunCommand.h"

#include "host/channel/ChannelErrors.h"
#include "host/channel/WatchedChannel.h"
#include "host/channel/factory/ChannelFactory.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/commandline/TransferLine.h"
#include "host/support/Files.h"
#include "host/support/StreamSetup.h"
#include "host/trace/TracingChannel.h"

#include <new>
#include <optional>

namespace host {
namespace {

// Connected as long as it exists.
class Connection {
public:
  Connection(ScriptProcessor& processor, Channel& channel) : m_processor(processor) { m_processor.Connect(&channel); }
  ~Connection() { m_processor.Connect(nullptr); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

private:
  ScriptProcessor& m_processor;
};

struct OutputContext {
  StandardOutput& output;
  TransferLine& line;
  ScriptProcessor& processor;
  bool aborted = false; // the last piece is the diagnostic of a script that was stopped
};

void PrintOutput(void* context, const char* text) {
  auto& target = *static_cast<OutputContext*>(context);
  const std::string_view piece = text;
  target.aborted = piece.starts_with("Processing aborted");
  try {
    target.line.Write(piece);
  } catch (const std::bad_alloc&) {
    target.output.GiveUp();
  }
  if (target.output.Failed())
    target.processor.Stop(); // nobody could see what the script does
}

struct RunEnd {
  EONX_ERR_ERRCODE_ result;
  const char* interrupted; // by what; null: by nothing
  bool stopped;            // by whatever asked for it; otherwise a script that failed did so by itself
};

// `text` is the script when it came from standard input.
RunEnd Run(const RunArguments& arguments, const std::optional<std::string>& text, ScriptProcessor& processor,
           StandardOutput& output, TransferLine& line) {
  OutputContext context{output, line, processor};
  const Interrupt interrupt([&processor](const InterruptCause& cause) { processor.StopFor(cause); });
  const EONX_ERR_ERRCODE_ result = text ? processor.Execute(*text, PrintOutput, &context)
                                        : processor.ExecuteFile(ScriptPath(arguments.script), PrintOutput, &context);
  line.Flush();
  output.Show(); // may wait for its reader
  return {result, interrupt.Interrupted(), result == EONX_ERR_SCRIPT && context.aborted};
}

void PrintValues(const std::vector<std::string>& names, ScriptProcessor& processor, StandardOutput& output) {
  if (!names.empty() && !output.AtLineStart())
    output.Write("\n"); // so that every value has a line of its own
  for (const std::string& name : names) {
    std::vector<TONXSCRIPTVARIABLE> records{RecordToGet(name)};
    if (processor.GetVariables(records) != 0)
      output.Write(name + "=" + FormatValue(records.front()) + "\n");
  }
}

void PrintRunEnd(std::string_view program, const std::string& script, const RunEnd& end) {
  std::string text = ResultText(end.result);
  if (end.interrupted && end.result == EONX_ERR_SCRIPT)
    text = std::string("stopped by ") + end.interrupted;
  else if (end.stopped)
    text = "stopped, because the channel has ended";
  else if (end.interrupted && end.result == EONX_ERR_NONE)
    text = std::string("not stopped by ") + end.interrupted + ": the script went on to its end";
  if (!text.empty())
    PrintMessage(program, script.empty() ? text : script + ": " + text);
}

std::string ReasonOf(Channel& channel, std::int32_t code) {
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
  if (unsent == kNotOnTape)
    PrintMessage(program, name + ": " + ReasonOf(channel, unsent));
  else if (unsent != 0)
    PrintMessage(program, name + ": not everything was sent: " + ReasonOf(channel, unsent));
  else if (ended)
    PrintMessage(program, name + ": " + ReasonOf(channel, kNotOpen));
  const bool failedByItself = end.result != EONX_ERR_NONE && !end.stopped;
  return (ended || unsent != 0) && !failedByItself ? static_cast<int>(kExitNoChannel) : end.result;
}

// The script when it comes from standard input. Otherwise the process's exit code; what is wrong has been told.
tl::expected<std::optional<std::string>, int> ReadScript(std::string_view program, const std::string& script) {
  if (script != "-")
    return std::nullopt;
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

// A channel that is open, and traced if that is wanted: `trace` must outlive it. Otherwise as above.
tl::expected<std::unique_ptr<Channel>, int> OpenChannel(std::string_view program, const RunArguments& arguments,
                                                        std::unique_ptr<TraceWriter>& trace) {
  const ChannelOptions& options = arguments.channel;
  auto made = MakeChannel(options);
  if (!made) {
    const ChannelFailure& failure = made.error();
    PrintMessage(program, failure.badText ? "--channel: " + failure.text : failure.text);
    return tl::unexpected<int>(failure.badText ? kExitUsage : kExitNoChannel);
  }
  if (!arguments.trace.empty()) {
    trace = OpenTrace(program, arguments.trace, options.text);
    if (!trace)
      return tl::unexpected<int>(kExitStream);
    made = std::make_unique<TracingChannel>(std::move(*made), *trace);
  }
  if (const std::int32_t code = (*made)->WaitUntilOpen(); code != 0 && !(*made)->HasBeenOpen()) {
    PrintMessage(program, options.text + ": " + ReasonOf(**made, code));
    return tl::unexpected<int>(kExitNoChannel);
  }
  return std::move(*made);
}

} // namespace

int RunCommand(std::string_view program, const RunArguments& arguments, ScriptProcessor& processor) {
  const auto text = ReadScript(program, arguments.script);
  if (!text)
    return text.error();
  std::unique_ptr<TraceWriter> trace;
  auto opened = OpenChannel(program, arguments, trace);
  if (!opened)
    return opened.error();
  StandardOutput output;
  TransferLine line(output, IsOutputTerminal());
  bool channelEnded = false;
  WatchedChannel channel(std::make_unique<TransferWatch>(std::move(*opened), line), [&](WatchedChannel::Left left) {
    channelEnded = true;
    if (!arguments.keepGoing && left == WatchedChannel::Left::kNothing)
      processor.Stop();
  });
  const Connection connection(processor, channel);
  auto records = RecordsToSet(arguments.variables);
  if (const EONX_ERR_ERRCODE_ result = processor.SetVariables(records); result != EONX_ERR_NONE) {
    PrintMessage(program, ResultText(result));
    return result;
  }

  processor.ShowBeforeWaiting([&output] { output.Show(); });
  const RunEnd end = Run(arguments, *text, processor, output, line);
  const bool stoppedForOutput = output.Failed();
  PrintValues(arguments.gets, processor, output);
  if (!stoppedForOutput)
    PrintRunEnd(program, arguments.script, end);
  if (const int code = ExitCodeOf(program, output); code != 0)
    return code;
  return ConcludeChannel(program, arguments.channel.text, end, channelEnded, channel);
}

} // namespace host
