#include "host/commandline/TraceCommand.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "host/support/Text.h"
#include "host/trace/CaptureFile.h"
#include "host/trace/TraceReader.h"
#include "host/trace/TraceText.h"

namespace host {
namespace {

constexpr unsigned kLongestGap = 3600000; // ms

// Otherwise what is wrong, with the name of the option.
tl::expected<TraceTextOptions, std::string> ReadTextOptions(const CommandLine& line) {
  TraceTextOptions options;
  for (const std::string& name : line.All("--only")) {
    if (!options.filter.Add(name))
      return tl::unexpected("--only " + name + ": there are " + TraceFilter::Names());
  }
  const std::string times = line.Value("--times", "start");
  if (times == "absolute")
    options.times = TraceTimes::kAbsolute;
  else if (times == "last")
    options.times = TraceTimes::kSinceLast;
  else if (times != "start")
    return tl::unexpected("--times " + times + ": there are absolute, start, last");
  const std::string gap = line.Value("--gap", "20");
  unsigned milliseconds = 0;
  if (!ParseNumber(gap, milliseconds) || milliseconds > kLongestGap)
    return tl::unexpected("--gap " + gap + ": expected milliseconds, 0 to " + std::to_string(kLongestGap));
  options.gap = std::uint64_t{milliseconds} * 1000;
  return options;
}

// Whether a capture may be written to a path: nothing is there, or an older capture.
bool MayBecomeCapture(const std::string& path) {
  const auto held = SoleFile::Hold(path);
  const std::string beginning = held ? held->Beginning(16) : std::string();
  return beginning.empty() || IsCapture(beginning);
}

// Nothing when it is no trace, which has been told.
std::optional<Trace> LoadTrace(std::string_view program, const std::string& path) {
  auto trace = ReadTrace(path);
  if (!trace) {
    PrintMessage(program, trace.error());
    return std::nullopt;
  }
  if (!trace->note.empty())
    PrintMessage(program, trace->note);
  return std::move(*trace);
}

} // namespace

tl::expected<std::string, std::string> ReadTracePath(const CommandLine& line) {
  std::string path = line.Value("--trace", "");
  if (line.Has("--trace") && path.empty())
    return tl::unexpected<std::string>("--trace: the file has no name");
  return path;
}

std::unique_ptr<TraceWriter> OpenTrace(std::string_view program, const std::string& path,
                                       const std::string& channelText, TraceFork& records) {
  TraceHeader header;
  header.channel = channelText;
  header.program = std::string(program) + " " OND_VERSION;
  auto writer = TraceWriter::Open(path, std::move(header), records.Clock(), [program](const std::string& problem) {
    PrintMessage(program, problem + "; the run goes on without it");
  });
  if (!writer) {
    PrintMessage(program, writer.error());
    return nullptr;
  }
  records.Add(**writer);
  return std::move(*writer);
}

int ShowTrace(std::string_view program, const CommandLine& line) {
  const auto options = ReadTextOptions(line);
  if (!options) {
    PrintMessage(program, options.error());
    return kExitUsage;
  }
  const auto trace = LoadTrace(program, line.Value("FILE", ""));
  if (!trace)
    return kExitStream;
  StandardOutput output;
  WriteTraceText(*trace, *options, [&output](std::string_view text) { output.Write(text); });
  return ExitCodeOf(program, output);
}

int ExportTrace(std::string_view program, const CommandLine& line) {
  const auto trace = LoadTrace(program, line.Value("FILE", ""));
  if (!trace)
    return kExitStream;
  const std::string path = line.Value("OUT", "");
  if (!MayBecomeCapture(path)) {
    PrintMessage(program, path + " is not a capture, and is not replaced by one");
    return kExitStream;
  }
  if (!WriteWholeFile(path, CaptureOf(*trace))) {
    PrintMessage(program, path + ": the file cannot be written");
    return kExitStream;
  }
  return 0;
}

} // namespace host
