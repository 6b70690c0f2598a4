// `send`: a text to the device, and its answer.
#pragma once

#include "host/commandline/CommandLine.h"
#include "host/talk/Unescape.h"

#include <string_view>

namespace host {

// Sends the texts, prints what the device answers until a text comes, time is over or the device is silent. Returns the
// process's exit code. `program` begins messages.
int SendCommand(std::string_view program, const CommandLine& line, const Unescape& unescape);

} // namespace host
