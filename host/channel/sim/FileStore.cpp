#include "host/channel/sim/FileStore.h"

#include "host/support/Crc32.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

char ReverseBits(char c) {
  unsigned value = static_cast<unsigned char>(c);
  value = ((value & 0xF0U) >> 4) | ((value & 0x0FU) << 4);
  value = ((value & 0xCCU) >> 2) | ((value & 0x33U) << 2);
  value = ((value & 0xAAU) >> 1) | ((value & 0x55U) << 1);
  return static_cast<char>(static_cast<unsigned char>(value));
}

std::string StoredBytes(const DeviceFile& file) {
  std::string bytes(file.bytes);
  if (file.mode == OND_FILE_BIT_REVERSE)
    std::transform(bytes.begin(), bytes.end(), bytes.begin(), ReverseBits);
  return bytes;
}

} // namespace

FileStore::FileStore(std::uint32_t blocks, std::optional<StoreFolder> folder)
    : m_blocks(blocks), m_folder(std::move(folder)) {
  if (!m_folder)
    return;
  for (StoreFolder::Entry& entry : m_folder->Load(Capacity())) {
    if (UsedBlocks() + BlocksFor(entry.bytes.size()) <= m_blocks)
      m_files[entry.id] = {entry.type, std::move(entry.bytes)};
  }
}

std::uint64_t FileStore::UsedBlocks() const {
  std::uint64_t blocks = 0;
  for (const auto& [id, file] : m_files)
    blocks += BlocksFor(file.bytes.size());
  return blocks;
}

void FileStore::List(Directory& directory) const {
  std::uint64_t bytes = 0;
  for (const auto& [id, file] : m_files) {
    directory.entries.push_back({id, file.type, static_cast<std::uint32_t>(file.bytes.size())});
    bytes += file.bytes.size();
  }
  const std::uint64_t used = UsedBlocks();
  directory.info.freeFactorA = kBlockSize;
  directory.info.freeFactorB = static_cast<std::uint32_t>(m_blocks - used);
  directory.info.fileCount = static_cast<std::uint32_t>(m_files.size());
  directory.info.bytesInFiles = static_cast<std::uint32_t>(bytes);
  directory.info.bytesOnDevice = static_cast<std::uint32_t>(used * kBlockSize);
}

ChannelError FileStore::Check(const DeviceFile& file) const {
  if (file.mode > OND_FILE_PROGRAM)
    return kUnknownFileMode;
  std::uint64_t available = m_blocks;
  if (file.mode != OND_FILE_PROGRAM) {
    const auto replaced = m_files.find(file.id);
    available -= UsedBlocks();
    available += replaced == m_files.end() ? 0 : BlocksFor(replaced->second.bytes.size());
  }
  return BlocksFor(file.bytes.size()) <= available ? kChannelOk : kDeviceFull;
}

ChannelError FileStore::Store(const DeviceFile& file) {
  if (const ChannelError error = Check(file); error != kChannelOk)
    return error;
  if (file.mode == OND_FILE_PROGRAM) {
    m_logic = Logic{file.bytes.size(), Crc32(file.bytes)};
    return kChannelOk;
  }
  std::string bytes = StoredBytes(file);
  if (m_folder && !m_folder->Save(file.id, file.type, bytes))
    return kStorageFailed;
  m_files[file.id] = {file.type, std::move(bytes)};
  return kChannelOk;
}

ChannelError FileStore::Remove(std::uint8_t id) {
  const auto file = m_files.find(id);
  if (file == m_files.end())
    return kNoSuchFile;
  if (m_folder && !m_folder->Remove(id))
    return kStorageFailed;
  m_files.erase(file);
  return kChannelOk;
}

ChannelError FileStore::Clear() {
  while (!m_files.empty()) {
    if (const ChannelError error = Remove(m_files.begin()->first); error != kChannelOk)
      return error;
  }
  return kChannelOk;
}

} // namespace host
