#include "host/trace/TraceReader.h"

#include "host/support/Files.h"
#include "host/trace/TraceLine.h"

#include <limits>

namespace host {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // as some editors put it in front

struct Line {
  std::string_view text;
  std::size_t number = 0;
  bool isWhole = false; // its end is there
};

// Takes the next line off `file`.
Line TakeLine(std::string_view& file, std::size_t number) {
  const std::size_t end = file.find('\n');
  const Line line{file.substr(0, end), number, end != std::string_view::npos};
  file.remove_prefix(line.isWhole ? end + 1 : file.size());
  return line;
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

// Puts a line into the trace. Empty, or what is wrong.
std::string Take(const Line& line, Trace& trace, bool& hasHeader) {
  auto parsed = ParseTraceLine(line.text);
  if (!parsed)
    return hasHeader ? parsed.error() : "not a trace: " + parsed.error();
  if (auto* const header = std::get_if<TraceHeader>(&*parsed)) {
    if (hasHeader)
      return "a second header: two traces are no trace";
    trace.header = std::move(*header);
    hasHeader = true;
    return {};
  }
  if (!hasHeader)
    return "not a trace: the first line is no header (\"schema\")";
  if (auto* const call = std::get_if<TraceCall>(&*parsed))
    trace.entries.push_back({line.number, std::move(*call)});
  else
    trace.entries.push_back({line.number, std::move(std::get<TraceEvent>(*parsed))});
  return {};
}

} // namespace

tl::expected<Trace, std::string> ParseTrace(std::string_view file, const std::string& name) {
  if (file.starts_with(kByteOrderMark))
    file.remove_prefix(kByteOrderMark.size());
  Trace trace;
  bool hasHeader = false;
  for (std::size_t number = 1; !file.empty(); ++number) {
    const Line line = TakeLine(file, number);
    if (IsBlank(line.text))
      continue;
    const std::string problem = Take(line, trace, hasHeader);
    if (problem.empty())
      continue;
    const std::string place = name + ":" + std::to_string(number) + ": ";
    if (line.isWhole || !hasHeader)
      return tl::unexpected(place + problem);
    trace.note = place + "the last line is cut off, and skipped";
  }
  if (!hasHeader)
    return tl::unexpected(name + ": not a trace: the file is empty");
  return trace;
}

tl::expected<Trace, std::string> ReadTrace(const std::string& path) {
  const ReadResult file = ReadWholeFile(path, std::numeric_limits<std::uint32_t>::max());
  if (file)
    return ParseTrace(*file, path);
  return tl::unexpected(path + (file.error() == ReadFailure::kTooLarge
                                    ? ": the file is too long for a trace: 4 GiB or more"
                                    : ": the file cannot be read"));
}

} // namespace host
