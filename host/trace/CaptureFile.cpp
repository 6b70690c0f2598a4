#include "host/trace/CaptureFile.h"

#include "host/trace/TraceText.h"

#include <algorithm>

namespace host {
namespace {

// The format's numbers (PCAP Next Generation Capture File Format), little endian.
constexpr std::uint32_t kSection = 0x0A0D0D0A, kInterface = 1, kPacket = 6;
constexpr std::uint32_t kByteOrder = 0x1A2B3C4D;
constexpr std::uint16_t kLinkUser0 = 147;
constexpr std::uint16_t kEndOption = 0, kComment = 1;
constexpr std::uint16_t kInterfaceName = 2, kTimeResolution = 9; // of interfaces
constexpr std::uint16_t kProgram = 4;                            // of sections
constexpr std::uint16_t kFlags = 2;                              // of packets
constexpr std::uint32_t kInbound = 1, kOutbound = 2;
constexpr std::size_t kLongestPacket = 65535; // analysers refuse much longer ones
constexpr std::size_t kLongestText = 4000;

class Block {
public:
  explicit Block(std::uint32_t type) : m_type(type) {}

  template <class Number>
  void Put(Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
      m_body += static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i));
  }
  void Put(std::string_view bytes) {
    m_body += bytes;
    m_body.append((4 - bytes.size() % 4) % 4, '\0');
  }
  void PutOption(std::uint16_t code, std::string_view value) {
    Put(code);
    Put(static_cast<std::uint16_t>(value.size()));
    Put(value);
  }
  void AppendTo(std::string& file) {
    Put(kEndOption);
    Put(std::uint16_t{0});
    const auto length = static_cast<std::uint32_t>(m_body.size() + 12);
    Block frame(m_type);
    frame.Put(m_type);
    frame.Put(length);
    frame.m_body += m_body;
    frame.Put(length);
    file += frame.m_body;
  }

private:
  std::uint32_t m_type;
  std::string m_body;
};

void AppendHead(std::string& file, const TraceHeader& header) {
  Block section(kSection);
  section.Put(kByteOrder);
  section.Put(std::uint16_t{1}); // version 1.0
  section.Put(std::uint16_t{0});
  section.Put(~std::uint64_t{0}); // a length that is not told
  section.PutOption(kProgram, header.program.substr(0, kLongestText));
  section.AppendTo(file);
  Block line(kInterface);
  line.Put(kLinkUser0);
  line.Put(std::uint16_t{0});
  line.Put(std::uint32_t{0}); // no packet is cut
  line.PutOption(kInterfaceName, header.channel.substr(0, kLongestText));
  line.PutOption(kTimeResolution, "\x06"); // microseconds
  line.AppendTo(file);
}

void AppendPacket(std::string& file, std::int64_t time, std::string_view bytes, std::uint32_t direction,
                  std::string_view comment) {
  Block packet(kPacket);
  packet.Put(std::uint32_t{0}); // the interface
  packet.Put(static_cast<std::uint32_t>(static_cast<std::uint64_t>(time) >> 32));
  packet.Put(static_cast<std::uint32_t>(time));
  packet.Put(static_cast<std::uint32_t>(bytes.size()));
  packet.Put(static_cast<std::uint32_t>(bytes.size()));
  packet.Put(bytes);
  if (direction != 0) {
    packet.Put(kFlags);
    packet.Put(std::uint16_t{4});
    packet.Put(direction);
  }
  packet.PutOption(kComment, comment.substr(0, kLongestText));
  packet.AppendTo(file);
}

void AppendRecord(std::string& file, std::int64_t start, const TraceCall& call) {
  if (call.operation == ChannelOperation::kReceive && call.bytes.empty() && call.result == 0)
    return;
  const std::uint32_t direction = call.Shape().receives ? kInbound : call.Shape().sends ? kOutbound : 0;
  std::string_view rest = call.bytes;
  do {
    const std::string_view bytes = rest.substr(0, kLongestPacket);
    AppendPacket(file, start + static_cast<std::int64_t>(call.start), bytes, direction, RecordText(call));
    rest.remove_prefix(bytes.size());
  } while (!rest.empty());
}

void AppendRecord(std::string& file, std::int64_t start, const TraceEvent& event) {
  AppendPacket(file, start + static_cast<std::int64_t>(event.start), {}, 0, RecordText(event));
}

} // namespace

std::string CaptureOf(const Trace& trace) {
  std::string file;
  AppendHead(file, trace.header);
  for (const TraceEntry& entry : trace.entries)
    std::visit([&](const auto& record) { AppendRecord(file, trace.header.start, record); }, entry.record);
  return file;
}

bool IsCapture(std::string_view beginning) {
  return beginning.starts_with("\x0A\x0D\x0D\x0A");
}

} // namespace host
