// Traces on the command lines: `--trace`, and the command `trace`.
#pragma once

#include "host/commandline/CommandLine.h"
#include "host/trace/TraceFork.h"
#include "host/trace/TraceWriter.h"

#include <string>
#include <string_view>

namespace host {

// The path of `--trace`, empty when it was not said. Otherwise what is wrong, with the name of the option.
tl::expected<std::string, std::string> ReadTracePath(const CommandLine& line);

// Begins a trace of the channel that `channelText` describes, as a sink of `records`: no call may come when it has
// ended. Null when it cannot be written, which has been told on standard error. So is a failure that comes later, once.
// `program` begins those messages and must stay.
std::unique_ptr<TraceWriter> OpenTrace(std::string_view program, const std::string& path,
                                       const std::string& channelText, TraceFork& records);

// `trace show`: prints the trace on standard output. Returns the process's exit code.
int ShowTrace(std::string_view program, const CommandLine& line);

// `trace export`: writes the trace as a capture file. As above.
int ExportTrace(std::string_view program, const CommandLine& line);

} // namespace host
