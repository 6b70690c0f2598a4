// The sample host with its windows.
#pragma once

#include "host/channel/factory/ChannelFactory.h"
#include "host/commandline/CommandLine.h"

namespace host {

// What the command line asks the windows for.
struct WindowsArguments {
  ChannelOptions channel;
  std::string script;   // to be run; empty: none
  std::string trace;    // the file; empty: none
  std::string log;      // the same
  std::string settings; // the same
};

// Otherwise what is wrong.
tl::expected<WindowsArguments, std::string> ReadWindowsArguments(const CommandLine& line);

// Opens the main window and returns the process's exit code when it has been closed. `program` begins the messages on
// standard error.
int RunWindows(const char* program, const WindowsArguments& arguments);

} // namespace host
