// The sample host with its windows.
#pragma once

#include "host/channel/factory/ChannelFactory.h"
#include "host/trace/TraceWriter.h"

namespace host {

// Opens the main window and returns the process's exit code when it has been closed. `program` begins the messages on
// standard error.
// What goes over the channel is written to `trace`, if there is one.
int RunWindows(const char* program, const ChannelOptions& options, TraceWriter* trace);

} // namespace host
