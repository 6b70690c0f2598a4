#include "host/channel/sim/SimulatedDevice.h"

#include "host/channel/ChannelErrors.h"

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

constexpr std::size_t kHeardAtOnce = 64 << 10; // bytes

std::string Configuration(const DeviceParts& parts) {
  const FileStore& files = parts.files;
  std::string text = "no files";
  if (parts.hasFiles)
    text = std::to_string(files.Blocks()) + " blocks of " + std::to_string(kBlockSize) + " bytes";
  if (parts.hasFiles && parts.blockTime.count() != 0)
    text += ", " + std::to_string(parts.blockTime.count()) + " ms each";
  if (files.Folder())
    text += ", files kept in " + files.Folder()->Path();
  return text + (parts.remark.empty() ? "" : ", " + parts.remark);
}

// Lets a transfer's time pass while its steps are reported from 0 to the last, or of a file that arrives in part, to
// the step that it comes to. The number of reports depends on the duration alone, not on the clock, so equal transfers
// look equal in a log. False: the client aborted.
bool PassTransferTime(milliseconds duration, const TransferProgress& progress, double arriving) {
  const std::int64_t steps = std::max<std::int64_t>(progress.steps, 1);
  const std::int64_t reportsPerStep = std::max<std::int64_t>(1, duration / (kAskInterval * steps));
  const std::int64_t slices = steps * reportsPerStep;
  const auto passing = static_cast<std::int64_t>(static_cast<double>(slices) * arriving);
  const auto start = steady_clock::now();
  for (std::int64_t slice = 0; slice < passing; ++slice) {
    if (!progress.Report(static_cast<std::uint32_t>(slice * progress.steps / slices)))
      return false;
    if (duration.count() != 0)
      std::this_thread::sleep_until(start + std::chrono::microseconds(duration) * (slice + 1) / slices);
  }
  return passing < slices || progress.Report(progress.steps);
}

} // namespace

SimulatedDevice::SimulatedDevice(DeviceParts parts)
    : ChannelSource(parts.name, Configuration(parts)), m_notice(std::move(parts.notice)), m_hasFiles(parts.hasFiles),
      m_blockTime(parts.blockTime), m_files(std::move(parts.files)), m_console(parts.makeConsole(m_files)),
      m_cable(parts.cable, parts.seed) {}

std::int32_t SimulatedDevice::WaitUntilOpen() {
  return IsOpen() ? kChannelOk : kNotOpen;
}

std::int32_t SimulatedDevice::WaitUntilSent() {
  const std::lock_guard guard(m_mutex);
  return m_isUnsent ? kNotOpen : kChannelOk;
}

bool SimulatedDevice::HasEnded() {
  const std::lock_guard guard(m_mutex);
  return m_cable.IsCut() && m_arrived.empty();
}

bool SimulatedDevice::IsOpen() {
  const std::lock_guard guard(m_mutex);
  return !m_cable.IsCut();
}

const char* SimulatedDevice::DescribeError(std::int64_t code) {
  return code == kNotOpen && !IsOpen() ? "The cable is cut" : ChannelSource::DescribeError(code);
}

bool SimulatedDevice::Hear(std::size_t most) {
  std::string said(most, '\0');
  said.resize(m_console->Read(steady_clock::now(), said.data(), said.size()));
  m_arrived += m_cable.Carry(Cable::Direction::kFromDevice, said);
  return !said.empty();
}

tl::expected<std::size_t, std::int32_t> SimulatedDevice::ReceiveBytes(char* buffer, std::size_t capacity) {
  const std::lock_guard guard(m_mutex);
  while (m_arrived.empty() && !m_cable.IsCut() && Hear(std::min(capacity, kHeardAtOnce))) {
  }
  if (m_arrived.empty() && m_cable.IsCut())
    return tl::unexpected(kNotOpen);
  const std::size_t count = m_arrived.copy(buffer, capacity);
  m_arrived.erase(0, count);
  return count;
}

std::int32_t SimulatedDevice::SendBytes(std::string_view bytes) {
  const std::lock_guard guard(m_mutex);
  if (bytes.size() >= m_cable.BytesLeft(Cable::Direction::kToDevice))
    Hear(kHeardAtOnce); // what is still on its way when the cable is cut is lost
  if (m_cable.IsCut()) {
    m_isUnsent = true;
    return kNotOpen;
  }
  m_isUnsent = bytes.size() > m_cable.BytesLeft(Cable::Direction::kToDevice);
  m_console->Write(steady_clock::now(), m_cable.Carry(Cable::Direction::kToDevice, bytes));
  return kChannelOk;
}

tl::expected<DeviceFiles*, std::int32_t> SimulatedDevice::Files() {
  if (!IsOpen())
    return tl::unexpected(kNotOpen);
  if (!m_hasFiles)
    return tl::unexpected(kNoDeviceFiles);
  return static_cast<DeviceFiles*>(this);
}

std::int32_t SimulatedDevice::SendFile(const DeviceFile& file, const TransferProgress& progress) {
  double arriving = 1;
  {
    const std::lock_guard guard(m_mutex);
    if (const ChannelError error = m_files.Check(file); error != kChannelOk)
      return error;
    const std::uint64_t left = m_cable.BytesLeft(Cable::Direction::kToDevice);
    if (left < file.bytes.size())
      arriving = static_cast<double>(left) / static_cast<double>(file.bytes.size());
  }
  const auto blocks = static_cast<std::int64_t>(BlocksFor(file.bytes.size()));
  if (!PassTransferTime(m_blockTime * blocks, progress, arriving))
    return kTransferAborted;
  const std::lock_guard guard(m_mutex);
  return m_cable.CarryFile(file.bytes.size()) < file.bytes.size() ? kNotOpen : m_files.Store(file);
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
