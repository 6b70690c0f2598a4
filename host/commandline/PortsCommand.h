// The command `ports`.
#pragma once

#include <string_view>

namespace host {

// Prints the machine's serial ports on standard output, or on standard error that there are none. Returns the process's
// exit code.
int ShowPorts(std::string_view program);

} // namespace host
