// The sample host with its windows.
#pragma once

#include "host/channel/factory/ChannelFactory.h"
#include "host/trace/TraceFork.h"

namespace host {

// Opens the main window and returns the process's exit code when it has been closed. `program` begins the messages on
// standard error.
// What goes over the channel goes to the sinks of `records`, which must stay.
int RunWindows(const char* program, const ChannelOptions& options, TraceFork& records);

} // namespace host
