#include "host/channel/ChannelSource.h"

#include "host/channel/ChannelErrors.h"
#include "host/support/Files.h"

#include <cstdio>
#include <utility>

namespace host {
namespace {

// Nothing may be thrown across the contract; what can be thrown below is about memory.
template <class Work>
std::int32_t Guarded(Work work) noexcept {
  try {
    return work();
  } catch (...) {
    return kOutOfMemory;
  }
}

// A code that is none of ours (an injected one, say). Per thread, so that it outlives calls on other threads.
const char* TextOfForeignCode(std::int64_t code) {
  thread_local char text[32];
  std::snprintf(text, sizeof text, "Error %lld", static_cast<long long>(code));
  return text;
}

} // namespace

ChannelSource::ChannelSource(std::string description, std::string configuration)
    : m_description(std::move(description)), m_configuration(std::move(configuration)) {}

const char* ChannelSource::GetInfoString(std::uint32_t what, std::int64_t code) {
  switch (what) {
  case OND_INFO_DESCRIPTION:
    return m_description.c_str();
  case OND_INFO_CONFIGURATION:
    return m_configuration.c_str();
  case OND_INFO_ERROR: {
    const char* text = DescribeError(code);
    return text ? text : TextOfForeignCode(code);
  }
  default:
    return "";
  }
}

const char* ChannelSource::DescribeError(std::int64_t code) {
  return ErrorCodeText(code);
}

std::int32_t ChannelSource::Lock(void*, std::uint32_t) {
  return kChannelOk;
}

std::int32_t ChannelSource::Unlock(void*) {
  return kChannelOk;
}

std::uint32_t ChannelSource::GetState() {
  return IsOpen() ? 1 : 2;
}

std::int32_t ChannelSource::Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) {
  return Guarded([&]() -> std::int32_t {
    if (!received || (!buffer && bufferSize != 0))
      return kInvalidArgument;
    const auto count = ReceiveBytes(buffer, bufferSize);
    *received = count.value_or(0);
    return count ? static_cast<std::int32_t>(kChannelOk) : count.error();
  });
}

std::int32_t ChannelSource::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  return Guarded([&]() -> std::int32_t {
    if (!data && length != 0)
      return kInvalidArgument;
    const std::int32_t code = SendBytes({data, static_cast<std::size_t>(length)});
    if (written)
      *written = code == kChannelOk ? length : 0;
    return code;
  });
}

template <class Work>
std::int32_t ChannelSource::WithFiles(Work work) noexcept {
  return Guarded([&]() -> std::int32_t {
    const auto files = Files();
    return files ? work(**files) : files.error();
  });
}

std::int32_t ChannelSource::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                   std::uint8_t fileType, std::uint32_t fileMode,
                                                   TransferProgressCallback callback, void* context, std::uint32_t,
                                                   std::uint32_t steps) {
  return WithFiles([&](DeviceFiles& files) -> std::int32_t {
    if (!data && length != 0)
      return kInvalidArgument;
    const std::string_view bytes(data, static_cast<std::size_t>(length));
    return files.SendFile({bytes, fileId, fileType, fileMode}, {callback, context, steps});
  });
}

std::int32_t ChannelSource::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                         std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                         std::uint32_t, std::uint32_t steps) {
  return WithFiles([&](DeviceFiles& files) -> std::int32_t {
    if (!localPath)
      return kInvalidArgument;
    const std::string path = FromScriptPath(localPath);
    if (!IsRegularFile(path))
      return kLocalFileUnreadable;
    const ReadResult bytes = ReadWholeFile(path, files.LargestFile());
    if (!bytes)
      return bytes.error() == ReadFailure::kTooLarge ? kDeviceFull : kLocalFileUnreadable;
    return files.SendFile({*bytes, fileId, fileType, fileMode}, {callback, context, steps});
  });
}

std::int32_t ChannelSource::ReadDirectory() {
  return WithFiles([&](DeviceFiles& files) -> std::int32_t {
    Directory directory;
    const std::int32_t code = files.ListFiles(directory);
    if (code != kChannelOk)
      return code;
    const std::lock_guard guard(m_directoryMutex);
    m_directory = std::move(directory);
    return kChannelOk;
  });
}

std::uint64_t ChannelSource::GetDirectoryEntryCount() {
  const std::lock_guard guard(m_directoryMutex);
  return m_directory.entries.size();
}

std::int32_t ChannelSource::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) {
  const std::lock_guard guard(m_directoryMutex);
  if (!entry || index >= m_directory.entries.size())
    return kInvalidArgument;
  *entry = m_directory.entries[index];
  return kChannelOk;
}

std::int32_t ChannelSource::GetDirectoryInfo(TDEVDIRINFO* info) {
  const std::lock_guard guard(m_directoryMutex);
  if (!info)
    return kInvalidArgument;
  *info = m_directory.info;
  return kChannelOk;
}

std::int32_t ChannelSource::DeleteDeviceFile(std::uint8_t fileId) {
  return WithFiles([&](DeviceFiles& files) { return files.DeleteFile(fileId); });
}

std::int32_t ChannelSource::FormatDevice(std::uint32_t usedBlocksOnly) {
  return WithFiles([&](DeviceFiles& files) { return files.Format(usedBlocksOnly != 0); });
}

} // namespace host
