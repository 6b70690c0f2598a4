// The simulated device as tests talk to it.
#pragma once

#include "host/channel/ChannelErrors.h"
#include "host/channel/factory/ChannelFactory.h"

#include <doctest/doctest.h>

#include <memory>
#include <string>

namespace host {

inline std::unique_ptr<Channel> MakeDevice(const ChannelOptions& options = {}) {
  auto made = MakeChannel(options);
  REQUIRE_MESSAGE(made, made.error().text);
  return std::move(*made);
}

inline std::int32_t Send(Channel& channel, const std::string& bytes, std::uint8_t id, std::uint8_t type,
                         std::uint32_t mode = OND_FILE_NORMAL) {
  return channel.TransmitFileFromMemory(bytes.data(), bytes.size(), id, type, mode, nullptr, nullptr, 1, 40);
}

// The directory as "ID:TYPE:SIZE" words.
inline std::string DirectoryOf(Channel& channel) {
  REQUIRE(channel.ReadDirectory() == kChannelOk);
  std::string words;
  for (std::uint32_t i = 0; i < channel.GetDirectoryEntryCount(); ++i) {
    TDEVDIRENTRY entry{};
    REQUIRE(channel.GetDirectoryEntry(i, &entry) == kChannelOk);
    words += (i == 0 ? "" : " ") + std::to_string(entry.fileId) + ":" + std::to_string(entry.fileType) + ":" +
             std::to_string(entry.fileSize);
  }
  return words;
}

} // namespace host
