// Reads a device file.
#pragma once

#include "host/channel/sim/description/DeviceDescription.h"
#include "host/channel/sim/description/StatementReader.h"

#include <tl/expected.hpp>

#include <string_view>
#include <vector>

namespace host {

// One statement a line; otherwise every mistake that was found, one a line at most, the first of them first.
tl::expected<DeviceDescription, std::vector<Mistake>> ParseDevice(std::string_view text);

} // namespace host
