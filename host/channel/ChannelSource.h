// Base of the channels that reach a device: translates the contract's operations into a few typed ones, so that a
// source only says how its bytes and files move.
#pragma once

#include "host/channel/Channel.h"

#include <tl/expected.hpp>

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// A file on its way to the device. `bytes` stays the caller's.
struct DeviceFile {
  std::string_view bytes;
  std::uint8_t id;
  std::uint8_t type;
  std::uint32_t mode; // OND_FILE_…
};

// How a transfer tells its progress.
struct TransferProgress {
  TransferProgressCallback callback; // may be null
  void* context;
  std::uint32_t steps;

  // Reports `stepsDone` of `steps`. False: the transfer is to be aborted.
  bool Report(std::uint32_t stepsDone) const { return !callback || callback(context, stepsDone) == 0; }
};

struct Directory {
  std::vector<TDEVDIRENTRY> entries;
  TDEVDIRINFO info{};
};

// The files of a device, behind the contract's checks and translations. [any thread]
class DeviceFiles {
public:
  virtual std::uint64_t LargestFile() const = 0; // in bytes; larger ones are refused without being read
  virtual std::int32_t SendFile(const DeviceFile& file, const TransferProgress& progress) = 0;
  virtual std::int32_t ListFiles(Directory& directory) = 0;
  virtual std::int32_t DeleteFile(std::uint8_t fileId) = 0;
  virtual std::int32_t Format(bool usedBlocksOnly) = 0;

protected:
  ~DeviceFiles() = default;
};

// Checks arguments, reads local files, holds the directory between its operations, and lets no exception out. Locking
// is a decorator's business: here it always succeeds.
class ChannelSource : public Channel {
public:
  const char* GetInfoString(std::uint32_t what, std::int64_t code) final;
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) final;
  std::int32_t Unlock(void* owner) final;
  std::uint32_t GetState() final;
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) final;
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) final;
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) final;
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) final;
  std::int32_t ReadDirectory() final;
  std::uint64_t GetDirectoryEntryCount() final;
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) final;
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) final;
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) final;
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) final;

protected:
  // Both texts are for users: what this is, and how it is set up.
  ChannelSource(std::string description, std::string configuration);

  // What a source is. All of them may be called from any thread; what can fail answers a code, 0 for success.
  virtual bool IsOpen() = 0;
  // How many bytes were put into `buffer`, or the code that tells why none can come.
  virtual tl::expected<std::size_t, std::int32_t> ReceiveBytes(char* buffer, std::size_t capacity) = 0;
  virtual std::int32_t SendBytes(std::string_view bytes) = 0;
  // The files, which stay the source's and are never null, or the code that tells why they cannot be reached.
  virtual tl::expected<DeviceFiles*, std::int32_t> Files() = 0;
  // The text of a code, the source's for as long as it lives; null when it is unknown.
  virtual const char* DescribeError(std::int64_t code);

private:
  // The answer of a file operation: `work` with the files, or why there are none.
  template <class Work>
  std::int32_t WithFiles(Work work) noexcept;

  const std::string m_description;
  const std::string m_configuration;
  std::mutex m_directoryMutex;
  Directory m_directory; // as read last
};

} // namespace host
