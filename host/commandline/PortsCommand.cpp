#include "host/commandline/PortsCommand.h"

#include "host/channel/stream/SerialPorts.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"

namespace host {

int ShowPorts(std::string_view program) {
  const std::string lines = SerialPortLines(ListSerialPorts());
  if (lines.empty()) {
    PrintMessage(program, "no serial port found");
    return kExitNoChannel;
  }
  StandardOutput output;
  output.Write(lines);
  return ExitCodeOf(program, output);
}

} // namespace host
