// The operations of a channel as data: whatever goes by an operation's name takes it from this table.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host {

// In the order of the contract's slots.
enum class ChannelOperation {
  kGetInfoString,
  kLock,
  kUnlock,
  kGetState,
  kReceive,
  kTransmit,
  kTransmitFileFromMemory,
  kTransmitFile,
  kReadDirectory,
  kGetDirectoryEntryCount,
  kGetDirectoryEntry,
  kGetDirectoryInfo,
  kDeleteDeviceFile,
  kFormatDevice,
};

struct ChannelOperationTraits {
  ChannelOperation operation;
  std::string_view name;
  bool canFail; // answers a code or a state, which tells that something is wrong
};

inline constexpr std::array kChannelOperations = std::to_array<ChannelOperationTraits>({
    {ChannelOperation::kGetInfoString, "GetInfoString", false},
    {ChannelOperation::kLock, "Lock", true},
    {ChannelOperation::kUnlock, "Unlock", true},
    {ChannelOperation::kGetState, "GetState", true},
    {ChannelOperation::kReceive, "Receive", true},
    {ChannelOperation::kTransmit, "Transmit", true},
    {ChannelOperation::kTransmitFileFromMemory, "TransmitFileFromMemory", true},
    {ChannelOperation::kTransmitFile, "TransmitFile", true},
    {ChannelOperation::kReadDirectory, "ReadDirectory", true},
    {ChannelOperation::kGetDirectoryEntryCount, "GetDirectoryEntryCount", false},
    {ChannelOperation::kGetDirectoryEntry, "GetDirectoryEntry", true},
    {ChannelOperation::kGetDirectoryInfo, "GetDirectoryInfo", true},
    {ChannelOperation::kDeleteDeviceFile, "DeleteDeviceFile", true},
    {ChannelOperation::kFormatDevice, "FormatDevice", true},
});

// Where an operation stands in the table.
constexpr std::size_t IndexOf(ChannelOperation operation) {
  return static_cast<std::size_t>(operation);
}

consteval bool IsInOrder() {
  for (std::size_t i = 0; i < kChannelOperations.size(); ++i) {
    if (IndexOf(kChannelOperations[i].operation) != i)
      return false;
  }
  return true;
}
static_assert(IsInOrder());

} // namespace host
