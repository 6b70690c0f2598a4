// What stands behind `tcp:` and `serial:` in the text of a channel.
#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace host {

struct TcpAddress {
  std::string host; // a name or an address, without brackets
  std::uint16_t port = 0;

  // HOST:PORT, an IPv6 address in brackets.
  std::string Text() const;
};

struct SerialLine {
  std::string port; // as the system names it
  std::uint32_t baud = 0;
  int dataBits = 8;  // 5 to 8
  char parity = 'N'; // N, E or O
  int stopBits = 1;  // 1 or 2

  // "115200 baud, 8N1"
  std::string Settings() const;
  // What one character takes on the line.
  std::chrono::nanoseconds CharacterTime() const;
};

enum class FlowControl { kNone, kXonXoff, kRtsCts };

// How a serial port is opened.
struct SerialOptions {
  std::optional<bool> dtr;                // nothing: as the system likes it
  std::optional<bool> rts;                // the same; nothing with FlowControl::kRtsCts
  std::chrono::milliseconds breakTime{0}; // a break is sent first; 0: none
  FlowControl flow = FlowControl::kNone;
};

// How users write them.
inline constexpr const char* kTcpForm = "tcp:HOST:PORT";
inline constexpr const char* kSerialForm = "serial:PORT:BAUD[:FORMAT]";

// Read what stands behind the kind's name and colon, or tell a user what is wrong.
tl::expected<TcpAddress, std::string> ParseTcpAddress(const std::string& text);
tl::expected<SerialLine, std::string> ParseSerialLine(const std::string& text);

} // namespace host
