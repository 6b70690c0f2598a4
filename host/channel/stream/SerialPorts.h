// The serial ports of this machine. Bodies: win32/ and posix/.
#pragma once

#include <string>
#include <vector>

namespace host {

struct SerialPort {
  std::string name;        // as `serial:` takes it
  std::string description; // for people: who made it, what it is; may be empty
  std::string stableName;  // another name, which stays the device's wherever it is plugged in; may be empty
};

// In the order of their numbers. `root` is a folder that stands for the whole file system, for tests on systems that
// show their devices as files.
std::vector<SerialPort> ListSerialPorts(const std::string& root = {});

// A line for each: what to write in the text of a channel, and the description. Empty when there are none.
std::string SerialPortLines(const std::vector<SerialPort>& ports);

} // namespace host
