// The parts of a simulated device: the built-in one's, or those that a device file describes.
#pragma once

#include "host/channel/FaultyChannel.h"
#include "host/channel/sim/SimulatedDevice.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

inline constexpr std::string_view kSimForm = "sim[:FILE[,seed=N]]";

struct PartsFailure {
  std::string text;    // for users
  bool inText = false; // it lies in what the user has written: the channel's text or the device file
};

tl::expected<DeviceParts, PartsFailure> BuiltInParts(const SimulatedDeviceOptions& options);
// `settings` is what stands behind "sim:". The file's faults come behind those of `faults`.
tl::expected<DeviceParts, PartsFailure>
DescribedParts(const std::string& settings, const SimulatedDeviceOptions& options, std::vector<Fault>& faults);

} // namespace host
