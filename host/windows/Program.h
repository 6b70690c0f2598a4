// The sample host with its windows.
#pragma once

#include "host/channel/factory/ChannelFactory.h"

namespace host {

// Opens the main window and returns the process's exit code when it has been closed. `program` begins the messages on
// standard error.
int RunWindows(const char* program, const ChannelOptions& options);

} // namespace host
