// Times that users give in seconds.
#pragma once

#include "host/commandline/CommandLine.h"

#include <chrono>
#include <optional>

namespace host {

// The value of an option, 0.001 to 1000000 s; nothing when it was not said. Otherwise what is wrong, with the name of
// the option.
tl::expected<std::optional<std::chrono::milliseconds>, std::string> ReadSeconds(const CommandLine& line,
                                                                                std::string_view option);

} // namespace host
