// Makes chosen calls of a channel fail, for trying out how scripts and windows behave.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <array>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace host {

// The channel operations that can be made to fail.
enum class FaultyOperation {
  kLock,
  kUnlock,
  kGetState,
  kReceive,
  kTransmit,
  kTransmitFileFromMemory,
  kTransmitFile,
  kReadDirectory,
  kGetDirectoryEntry,
  kGetDirectoryInfo,
  kDeleteDeviceFile,
  kFormatDevice,
};
inline constexpr std::size_t kFaultyOperationCount = 12;

struct Fault {
  FaultyOperation operation;
  std::uint64_t call; // from 1; 0: every call
  std::int32_t code;  // what the call answers; 0 pretends success
};

// Reads "OPERATION[:N]=CODE". On failure nothing is returned and `error` says what is wrong.
std::optional<Fault> ParseFault(const std::string& text, std::string& error);

// A call with a fault answers the fault's code and does not reach the channel inside, except that `Unlock` still gives
// the lock back. [as the channel inside]
class FaultyChannel : public ForwardingChannel {
public:
  FaultyChannel(std::unique_ptr<Channel> inner, std::vector<Fault> faults);

  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override;
  std::int32_t Unlock(void* owner) override;
  std::uint32_t GetState() override;
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override;
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override;
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override;
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override;
  std::int32_t ReadDirectory() override;
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override;
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override;
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override;
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override;

private:
  // Counts a call of `operation`; answers the code of the first fault that is meant for it.
  std::optional<std::int32_t> NextFault(FaultyOperation operation);

  const std::vector<Fault> m_faults;
  std::mutex m_mutex; // guards m_calls
  std::array<std::uint64_t, kFaultyOperationCount> m_calls{};
};

} // namespace host
