#include "host/trace/TraceText.h"

#include "host/channel/ChannelErrors.h"
#include "host/support/HexText.h"
#include "host/support/Text.h"
#include "host/trace/TraceLine.h"
#include "host/trace/TraceSummary.h"

#include <algorithm>
#include <cstdio>

namespace host {
namespace {

std::string Seconds(std::uint64_t microseconds) {
  char text[40];
  std::snprintf(text, sizeof text, "%llu.%06llu", static_cast<unsigned long long>(microseconds / 1000000),
                static_cast<unsigned long long>(microseconds % 1000000));
  return text;
}

// The numbers and the text of a call: " FILE id 1 type 2".
std::string Details(const TraceCall& call) {
  const TraceShape& shape = call.Shape();
  std::string text;
  if (!shape.text.empty())
    text = " " + Quoted(call.text);
  for (std::size_t i = 0; i < shape.numbers.size() && !shape.numbers[i].empty(); ++i)
    text.append(" ").append(shape.numbers[i]).append(" ").append(std::to_string(call.numbers[i]));
  return text + ContentsText(call);
}

// What a call answered, as far as it tells something.
std::string Answer(const TraceCall& call) {
  const ChannelOperation operation = call.operation;
  if (operation == ChannelOperation::kGetState)
    return call.result == 1 ? " = 1 (open)" : " = " + std::to_string(call.result) + " (closed)";
  if (operation == ChannelOperation::kGetDirectoryEntryCount)
    return " = " + std::to_string(call.result);
  if (call.result == 0)
    return {};
  const char* const text = ErrorCodeText(call.result);
  return " failed: " + std::to_string(call.result) + (text ? std::string(" (") + text + ")" : std::string());
}

bool IsTransfer(const TraceCall& call) {
  return (call.operation == ChannelOperation::kReceive || call.operation == ChannelOperation::kTransmit) &&
         call.result == 0;
}

class TextWriter {
public:
  TextWriter(const Trace& trace, const TraceTextOptions& options, const std::function<void(std::string_view)>& write)
      : m_trace(trace), m_options(options), m_write(write) {}

  void WriteAll() {
    const TraceHeader& header = m_trace.header;
    m_write(TraceTimeText(header.start) + "  " + header.program + " on " + header.channel + "\n");
    for (const TraceEntry& entry : m_trace.entries) {
      if (m_options.filter.Fits(entry.record))
        std::visit([this](const auto& record) { Write(record); }, entry.record);
    }
    FlushBlock();
    m_write("\n" + SummaryText(Summarize(m_trace, m_options.filter)));
  }

private:
  void Write(const TraceCall& call) {
    if (!IsTransfer(call)) {
      WriteLine(call.start, RecordText(call));
      WriteBytes(call.bytes);
    } else if (!call.bytes.empty()) {
      const bool sends = call.operation == ChannelOperation::kTransmit;
      if (m_block.empty() || sends != m_blockSends || call.start > m_blockEnd + m_options.gap) {
        FlushBlock();
        m_blockStart = call.start;
        m_blockSends = sends;
      }
      m_block += call.bytes;
      m_blockEnd = call.start + call.duration;
    }
  }

  void Write(const TraceEvent& event) { WriteLine(event.start, RecordText(event)); }

  void FlushBlock() {
    const std::string block = std::exchange(m_block, {});
    if (block.empty())
      return;
    WriteLine(m_blockStart,
              (m_blockSends ? "> " : "< ") + std::to_string(block.size()) + (block.size() == 1 ? " byte" : " bytes"));
    WriteBytes(block);
  }

  void WriteBytes(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size(); i += kBytesInHexLine)
      m_write("    " + HexLine(bytes.substr(i, kBytesInHexLine)) + "\n");
  }

  void WriteLine(std::uint64_t time, const std::string& text) {
    FlushBlock();
    m_write(TimeText(time) + "  " + text + "\n");
  }

  std::string TimeText(std::uint64_t time) {
    const std::uint64_t last = std::exchange(m_last, time);
    std::string text;
    switch (m_options.times) {
    case TraceTimes::kAbsolute:
      return TraceTimeText(m_trace.header.start + static_cast<std::int64_t>(time));
    case TraceTimes::kSinceStart:
      text = Seconds(time);
      break;
    case TraceTimes::kSinceLast:
      text = "+" + Seconds(time - std::min(time, last));
      break;
    }
    constexpr std::size_t kWidth = 12;
    return std::string(kWidth - std::min(kWidth, text.size()), ' ') + text;
  }

  const Trace& m_trace;
  const TraceTextOptions& m_options;
  const std::function<void(std::string_view)>& m_write;
  std::uint64_t m_last = 0; // the time in the line before
  std::string m_block;      // bytes of one direction that wait for more
  bool m_blockSends = false;
  std::uint64_t m_blockStart = 0;
  std::uint64_t m_blockEnd = 0;
};

} // namespace

std::string RecordText(const TraceCall& call) {
  return std::string(call.Name()) + Details(call) + Answer(call);
}

std::string ContentsText(const TraceCall& call) {
  if (!call.contents)
    return {};
  return ", " + std::to_string(call.contents->size) + " bytes with CRC-32 " + CrcText(call.contents->crc32);
}

std::string RecordText(const TraceEvent& event) {
  std::string text = "* " + event.name;
  for (const auto& [name, value] : event.fields)
    text.append(" ").append(name).append(" ").append(Quoted(value));
  return text;
}

void WriteTraceText(const Trace& trace, const TraceTextOptions& options,
                    const std::function<void(std::string_view)>& write) {
  TextWriter(trace, options, write).WriteAll();
}

} // namespace host
