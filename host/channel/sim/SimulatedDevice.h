// The embedded device: an instrument with a text console and a file store, for working without hardware.
#pragma once

#include "host/channel/ChannelSource.h"
#include "host/channel/sim/DeviceConsole.h"
#include "host/channel/sim/FileStore.h"

#include <chrono>
#include <mutex>

namespace host {

struct SimulatedDeviceOptions {
  std::string folder; // keeps the device's files between runs; empty: they live as long as the device
  std::chrono::milliseconds blockTime{0}; // that a transfer takes for each block
  std::uint32_t blocks = 8192;            // of kBlockSize bytes
};

class SimulatedDevice : public ChannelSource, private DeviceFiles {
public:
  SimulatedDevice(const SimulatedDeviceOptions& options, std::optional<StoreFolder> folder);

private:
  bool IsOpen() override { return true; }
  tl::expected<std::size_t, std::int32_t> ReceiveBytes(char* buffer, std::size_t capacity) override;
  std::int32_t SendBytes(std::string_view bytes) override;
  tl::expected<DeviceFiles*, std::int32_t> Files() override { return static_cast<DeviceFiles*>(this); }
  std::uint64_t LargestFile() const override { return m_files.Capacity(); }
  std::int32_t SendFile(const DeviceFile& file, const TransferProgress& progress) override;
  std::int32_t ListFiles(Directory& directory) override;
  std::int32_t DeleteFile(std::uint8_t fileId) override;
  std::int32_t Format(bool usedBlocksOnly) override;

  const std::chrono::milliseconds m_blockTime;
  std::mutex m_mutex; // guards the fields below; never held while a client's callback runs or time passes
  FileStore m_files;
  DeviceConsole m_console;
};

} // namespace host
