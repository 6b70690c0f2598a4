#include "host/channel/sim/SimulatedDevice.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A client can only abort when it is asked, so a slow transfer repeats the step it is at this often.
constexpr milliseconds kAskInterval{20};

// Blocks that the storage erases in the time that it writes one.
constexpr std::uint64_t kBlocksErasedAtOnce = 64;

std::string Configuration(const SimulatedDeviceOptions& options) {
  std::string text = std::to_string(options.blocks) + " blocks of " + std::to_string(kBlockSize) + " bytes";
  if (options.blockTime.count() != 0)
    text += ", " + std::to_string(options.blockTime.count()) + " ms each";
  if (!options.folder.empty())
    text += ", files kept in " + options.folder;
  return text;
}

// Lets a transfer's time pass while its steps are reported from 0 to the last. The number of reports depends on the
// duration alone, not on the clock, so equal transfers look equal in a log. False: the client aborted.
bool PassTransferTime(milliseconds duration, const TransferProgress& progress) {
  const std::int64_t steps = std::max<std::int64_t>(progress.steps, 1);
  const std::int64_t reportsPerStep = std::max<std::int64_t>(1, duration / (kAskInterval * steps));
  const std::int64_t slices = steps * reportsPerStep;
  const auto start = steady_clock::now();
  for (std::int64_t slice = 0; slice < slices; ++slice) {
    if (!progress.Report(static_cast<std::uint32_t>(slice * progress.steps / slices)))
      return false;
    if (duration.count() != 0)
      std::this_thread::sleep_until(start + std::chrono::microseconds(duration) * (slice + 1) / slices);
  }
  return progress.Report(progress.steps);
}

} // namespace

SimulatedDevice::SimulatedDevice(const SimulatedDeviceOptions& options, std::optional<StoreFolder> folder)
    : ChannelSource("Simulated device", Configuration(options)), m_blockTime(options.blockTime),
      m_files(options.blocks, std::move(folder)), m_console(m_files) {}

tl::expected<std::size_t, std::int32_t> SimulatedDevice::ReceiveBytes(char* buffer, std::size_t capacity) {
  const std::lock_guard guard(m_mutex);
  return m_console.Read(buffer, capacity);
}

std::int32_t SimulatedDevice::SendBytes(std::string_view bytes) {
  const std::lock_guard guard(m_mutex);
  m_console.Write(bytes);
  return kChannelOk;
}

std::int32_t SimulatedDevice::SendFile(const DeviceFile& file, const TransferProgress& progress) {
  {
    const std::lock_guard guard(m_mutex);
    if (const ChannelError error = m_files.Check(file); error != kChannelOk)
      return error;
  }
  const auto blocks = static_cast<std::int64_t>(BlocksFor(file.bytes.size()));
  if (!PassTransferTime(m_blockTime * blocks, progress))
    return kTransferAborted;
  const std::lock_guard guard(m_mutex);
  return m_files.Store(file);
}

std::int32_t SimulatedDevice::ListFiles(Directory& directory) {
  const std::lock_guard guard(m_mutex);
  m_files.List(directory);
  return kChannelOk;
}

std::int32_t SimulatedDevice::DeleteFile(std::uint8_t fileId) {
  const std::lock_guard guard(m_mutex);
  return m_files.Remove(fileId);
}

std::int32_t SimulatedDevice::Format(bool usedBlocksOnly) {
  std::uint64_t blocks = m_files.Blocks();
  if (usedBlocksOnly) {
    const std::lock_guard guard(m_mutex);
    blocks = m_files.UsedBlocks();
  }
  const std::uint64_t sectors = (blocks + kBlocksErasedAtOnce - 1) / kBlocksErasedAtOnce;
  std::this_thread::sleep_for(m_blockTime * static_cast<std::int64_t>(sectors));
  const std::lock_guard guard(m_mutex);
  return m_files.Clear();
}

} // namespace host
