// `term`: a terminal for the console.
#pragma once

#include "host/commandline/ChannelArguments.h"
#include "host/talk/Unescape.h"

#include <chrono>
#include <string>
#include <string_view>

namespace host {

struct TermArguments {
  ChannelOptions channel;
  std::string trace; // a path as typed, as the next one; empty: none is wanted
  std::string log;
  std::string lineEnd;               // bytes behind each typed line
  std::chrono::milliseconds silence; // that ends the answers when the input has ended
  bool hex = false;
  bool raw = false;
  bool stamps = false;
  bool history = true;
};

// The bytes of "cr", "lf", "crlf" or "none"; otherwise what is wrong.
tl::expected<std::string, std::string> ReadLineEnd(const std::string& name);

// Sends the lines that are typed, shows what the device says, until the user or the input ends it. Returns the
// process's exit code. `program` begins messages.
int TermCommand(std::string_view program, const CommandLine& line, const Unescape& unescape);

} // namespace host
