// The options that say which device a program works with, and how a simulated one behaves.
#pragma once

#include "host/channel/factory/ChannelFactory.h"
#include "host/commandline/CommandLine.h"

namespace host {

// Otherwise what is wrong, with the name of the option.
tl::expected<ChannelOptions, std::string> ReadChannelOptions(const CommandLine& line);

} // namespace host
