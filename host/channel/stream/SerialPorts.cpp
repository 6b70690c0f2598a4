#include "host/channel/stream/SerialPorts.h"

#include <algorithm>

namespace host {
namespace {

std::string ChannelText(const SerialPort& port) {
  return "serial:" + port.name + ":BAUD";
}

} // namespace

std::string SerialPortLines(const std::vector<SerialPort>& ports) {
  std::size_t width = 0;
  for (const SerialPort& port : ports)
    width = std::max(width, ChannelText(port).size());
  std::string lines;
  for (const SerialPort& port : ports) {
    std::string line = ChannelText(port);
    line.append(width - line.size(), ' ').append("  ").append(port.description);
    if (!port.stableName.empty())
      line.append("; always ").append(port.stableName);
    line.erase(line.find_last_not_of(' ') + 1);
    lines.append(line).append("\n");
  }
  return lines;
}

} // namespace host
