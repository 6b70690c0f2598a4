// A device without hardware: a file store, and a console at the end of a line.
#pragma once

#include "host/channel/ChannelSource.h"
#include "host/channel/sim/Cable.h"
#include "host/channel/sim/Console.h"
#include "host/channel/sim/FileStore.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace host {

// What a user asks for beside the device itself; it goes before what a device file says.
struct SimulatedDeviceOptions {
  std::string folder; // keeps the device's files between runs; empty: they live as long as the device
  std::optional<std::chrono::milliseconds> blockTime; // that a transfer takes for each block
  std::uint32_t blocks = 8192;                        // of kBlockSize bytes
};

// What a simulated device is made of.
struct DeviceParts {
  FileStore files;
  std::function<std::unique_ptr<Console>(const FileStore&)> makeConsole; // the files outlive it
  std::string name = "Simulated device";
  std::string remark{}; // on how it is set up, for users
  std::string notice{}; // see Channel::Notice
  bool hasFiles = true;
  std::chrono::milliseconds blockTime{0};
  CableFaults cable{};
  std::uint32_t seed = 0; // of the cable's faults
};

// Once its cable is cut, it is closed for good; what had arrived before can still be read.
class SimulatedDevice : public ChannelSource, private DeviceFiles {
public:
  explicit SimulatedDevice(DeviceParts parts);

  std::int32_t WaitUntilOpen() override;
  std::int32_t WaitUntilSent() override;
  bool HasEnded() override;
  std::string Notice() override { return m_notice; }

private:
  bool IsOpen() override;
  tl::expected<std::size_t, std::int32_t> ReceiveBytes(char* buffer, std::size_t capacity) override;
  std::int32_t SendBytes(std::string_view bytes) override;
  const char* DescribeError(std::int64_t code) override;
  tl::expected<DeviceFiles*, std::int32_t> Files() override;
  std::uint64_t LargestFile() const override { return m_files.Capacity(); }
  std::int32_t SendFile(const DeviceFile& file, const TransferProgress& progress) override;
  std::int32_t ListFiles(Directory& directory) override;
  std::int32_t DeleteFile(std::uint8_t fileId) override;
  std::int32_t Format(bool usedBlocksOnly) override;
  // Adds to m_arrived what comes over the cable of what the device has said until now. False: it has said nothing.
  bool Hear(std::size_t most);

  const std::string m_notice;
  const bool m_hasFiles;
  const std::chrono::milliseconds m_blockTime;
  std::mutex m_mutex; // guards the fields below; never held while a client's callback runs or time passes
  FileStore m_files;
  std::unique_ptr<Console> m_console;
  Cable m_cable;
  std::string m_arrived;   // not yet read
  bool m_isUnsent = false; // something that was to be sent is lost in the cut
};

} // namespace host
