#include "host/channel/stream/StreamSettings.h"

#include "host/support/Text.h"

#include <optional>
#include <utility>

namespace host {
namespace {

// The text around its last colon; nothing without one.
std::optional<std::pair<std::string, std::string>> SplitAtLastColon(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos)
    return std::nullopt;
  return std::pair(text.substr(0, colon), text.substr(colon + 1));
}

// "8N1" and the like.
bool ParseFormat(const std::string& text, SerialLine& line) {
  if (text.size() != 3)
    return false;
  const char parity = static_cast<char>(ToLowerAscii(text[1]) - 'a' + 'A');
  const bool known = text[0] >= '5' && text[0] <= '8' && (parity == 'N' || parity == 'E' || parity == 'O') &&
                     (text[2] == '1' || text[2] == '2');
  if (known) {
    line.dataBits = text[0] - '0';
    line.parity = parity;
    line.stopBits = text[2] - '0';
  }
  return known;
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

std::string TcpAddress::Text() const {
  const bool needsBrackets = host.find(':') != std::string::npos;
  return (needsBrackets ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

std::string SerialLine::Settings() const {
  return std::to_string(baud) + " baud, " + std::to_string(dataBits) + parity + std::to_string(stopBits);
}

std::chrono::nanoseconds SerialLine::CharacterTime() const {
  const int bits = 1 + dataBits + (parity == 'N' ? 0 : 1) + stopBits;
  return bits * std::chrono::nanoseconds(std::chrono::seconds(1)) / baud;
}

tl::expected<TcpAddress, std::string> ParseTcpAddress(const std::string& text) {
  const auto parts = SplitAtLastColon(text);
  // The last colon of "[::1]" belongs to the address.
  if (!parts || parts->first.empty() || text.ends_with(']'))
    return tl::unexpected(std::string("expected ") + kTcpForm + ", as in tcp:192.168.1.20:4000");
  TcpAddress address;
  address.host = parts->first;
  const bool bracketed = address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']';
  if (bracketed)
    address.host = address.host.substr(1, address.host.size() - 2);
  else if (address.host.find_first_of(":[]") != std::string::npos)
    return tl::unexpected<std::string>("an IPv6 address stands in brackets, as in tcp:[::1]:4000");
  if (!ParseNumber(parts->second, address.port) || address.port == 0)
    return tl::unexpected("the port " + Quoted(parts->second) + " is not a number from 1 to 65535");
  return address;
}

tl::expected<SerialLine, std::string> ParseSerialLine(const std::string& text) {
  // From the end: names of ports may hold colons.
  SerialLine line;
  auto parts = SplitAtLastColon(text);
  if (parts && !IsNumber(parts->second)) {
    if (!ParseFormat(parts->second, line)) {
      return tl::unexpected(Quoted(parts->second) +
                            " is neither a speed nor a format: data bits 5 to 8, parity N, E or "
                            "O, stop bits 1 or 2, as in 8N1");
    }
    parts = SplitAtLastColon(parts->first);
  }
  if (!parts || parts->first.empty()) {
    return tl::unexpected(std::string("expected ") + kSerialForm +
                          ", as in serial:COM3:115200:8N1 or serial:/dev/ttyUSB0:115200");
  }
  line.port = parts->first;
  if (!ParseNumber(parts->second, line.baud) || line.baud == 0)
    return tl::unexpected("the speed " + Quoted(parts->second) + " is not a number of bits per second");
  return line;
}

} // namespace host
