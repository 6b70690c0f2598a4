// The simulated device's storage: files in blocks, and the logic that "program" loads.
#pragma once

#include "host/channel/ChannelErrors.h"
#include "host/channel/ChannelSource.h"
#include "host/channel/sim/StoreFolder.h"

#include <map>
#include <optional>
#include <string>

namespace host {

inline constexpr std::uint32_t kBlockSize = 512; // bytes

// Blocks that a file of this many bytes occupies; an empty file has one too.
constexpr std::uint64_t BlocksFor(std::uint64_t bytes) {
  return bytes == 0 ? 1 : (bytes + kBlockSize - 1) / kBlockSize;
}

// [one thread at a time]
class FileStore {
public:
  struct File {
    std::uint8_t type;
    std::string bytes; // as stored: with the bits of "bit reverse" files reversed
  };
  struct Logic {
    std::uint64_t size;
    std::uint32_t crc;
  };

  // `folder`, when given, supplies the files and keeps them; files beyond the capacity stay there unseen.
  FileStore(std::uint32_t blocks, std::optional<StoreFolder> folder);

  std::uint32_t Blocks() const { return m_blocks; }
  const std::optional<StoreFolder>& Folder() const { return m_folder; }
  std::uint64_t UsedBlocks() const;
  std::uint64_t Capacity() const { return std::uint64_t{m_blocks} * kBlockSize; }
  const std::map<std::uint8_t, File>& Files() const { return m_files; }
  const std::optional<Logic>& LoadedLogic() const { return m_logic; }
  void List(Directory& directory) const;

  // Whether the file could be stored now.
  ChannelError Check(const DeviceFile& file) const;
  // Stores it, in the place of an earlier file with the same id; "program" loads it into the logic instead.
  ChannelError Store(const DeviceFile& file);
  ChannelError Remove(std::uint8_t id);
  // Removes all files; the loaded logic stays.
  ChannelError Clear();

private:
  const std::uint32_t m_blocks;
  std::optional<StoreFolder> m_folder;
  std::map<std::uint8_t, File> m_files;
  std::optional<Logic> m_logic;
};

} // namespace host
