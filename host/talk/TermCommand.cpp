#include "host/talk/TermCommand.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/Seconds.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/talk/TermSession.h"

namespace host {
namespace {

constexpr std::chrono::milliseconds kUsualSilence{500};

// Otherwise what is wrong, with the name of the option.
tl::expected<TermArguments, std::string> ReadArguments(const CommandLine& line) {
  TermArguments arguments;
  const auto channel = ReadChannelOptions(line);
  const auto trace = ReadTracePath(line);
  const auto lineEnd = ReadLineEnd(line.Value("--end", "cr"));
  const auto silence = ReadSeconds(line, "--silence");
  for (const std::string* error : {channel ? nullptr : &channel.error(), trace ? nullptr : &trace.error(),
                                   lineEnd ? nullptr : &lineEnd.error(), silence ? nullptr : &silence.error()}) {
    if (error)
      return tl::unexpected(*error);
  }
  arguments.channel = *channel;
  arguments.trace = *trace;
  arguments.lineEnd = *lineEnd;
  arguments.silence = silence->value_or(kUsualSilence);
  arguments.log = line.Value("--log", "");
  if (line.Has("--log") && arguments.log.empty())
    return tl::unexpected<std::string>("--log: the file has no name");
  arguments.hex = line.Has("--hex");
  arguments.raw = line.Has("--raw");
  arguments.stamps = line.Has("--stamps");
  arguments.history = !line.Has("--no-history");
  return arguments;
}

} // namespace

tl::expected<std::string, std::string> ReadLineEnd(const std::string& name) {
  if (name == "cr")
    return "\r";
  if (name == "lf")
    return "\n";
  if (name == "crlf")
    return "\r\n";
  if (name == "none")
    return "";
  return tl::unexpected("--end " + name + ": there are cr, lf, crlf, none");
}

int TermCommand(std::string_view program, const CommandLine& line, const Unescape& unescape) {
  const auto arguments = ReadArguments(line);
  if (!arguments) {
    PrintMessage(program, arguments.error());
    return kExitUsage;
  }
  TermLog log;
  if (!arguments->log.empty() && !log.Open(arguments->log)) {
    PrintMessage(program, arguments->log + ": the file of --log cannot be written");
    return kExitStream;
  }
  return TermSession(program, *arguments, unescape, log).Run();
}

} // namespace host
