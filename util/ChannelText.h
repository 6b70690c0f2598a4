// What a channel says about itself.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <string>

// The channel's words for an error; the number where it has none.
inline std::string ChannelErrorText(COndDeviceComm_0& channel, std::int32_t code) {
  const char* const text = channel.GetInfoString(OND_INFO_ERROR, code);
  return text ? text : std::to_string(code);
}
