// What stands behind `tcp:` and `serial:` in the text of a channel.
#pragma once

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
};

// On failure nothing is returned and `error` says what is wrong.
std::optional<TcpAddress> ParseTcpAddress(const std::string& text, std::string& error); // HOST:PORT
std::optional<SerialLine> ParseSerialLine(const std::string& text, std::string& error); // PORT:BAUD[:FORMAT]

} // namespace host
