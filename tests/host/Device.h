// The simulated device as tests talk to it.
#pragma once

#include "host/channel/ChannelErrors.h"
#include "host/channel/ChannelFactory.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

namespace host {

inline std::unique_ptr<Channel> MakeDevice(const ChannelOptions& options = {}) {
  ChannelResult result = MakeChannel(options);
  REQUIRE_MESSAGE(result.channel, result.error);
  return std::move(result.channel);
}

// Everything that waits to be read.
inline std::string ReadAll(Channel& channel) {
  std::string all;
  char buffer[100];
  std::uint64_t count = 0;
  do {
    REQUIRE(channel.Receive(buffer, sizeof buffer, &count) == kChannelOk);
    all.append(buffer, static_cast<std::size_t>(count));
  } while (count != 0);
  return all;
}

inline std::string Ask(Channel& channel, const std::string& command) {
  std::uint64_t written = 0;
  REQUIRE(channel.Transmit(command.data(), command.size(), &written) == kChannelOk);
  CHECK(written == command.size());
  return ReadAll(channel);
}

// What a transfer reported, and when it is to be aborted.
struct ProgressLog {
  static constexpr std::uint32_t kNever = 0xFFFFFFFF;
  std::vector<std::uint32_t> steps;
  std::uint32_t abortAt = kNever;

  static std::int32_t Report(void* context, std::uint32_t step) {
    auto& log = *static_cast<ProgressLog*>(context);
    log.steps.push_back(step);
    return step >= log.abortAt ? 1 : 0;
  }
};

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
