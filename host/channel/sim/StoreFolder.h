// A folder that keeps the simulated device's files between runs, one local file each: "003-type1.bin" is device file 3
// of type 1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

// Anything else that lies in the folder is left alone. [one thread at a time]
class StoreFolder {
public:
  struct Entry {
    std::uint8_t id;
    std::uint8_t type;
    std::string bytes;
  };

  // Makes the folder when it is not there. Nothing when it cannot be used.
  static std::optional<StoreFolder> Open(const std::string& path);

  const std::string& Path() const { return m_path; }
  // The files of at most `largest` bytes, ordered by id, one for each id; unreadable ones are passed over.
  std::vector<Entry> Load(std::uint64_t largest) const;
  // Writes a file, in the place of an earlier one with the same id.
  bool Save(std::uint8_t id, std::uint8_t type, const std::string& bytes) const;
  bool Remove(std::uint8_t id) const;

private:
  explicit StoreFolder(std::string path) : m_path(std::move(path)) {}
  // Removes every local file of a device file, but for the one called `kept`.
  bool RemoveOthers(std::uint8_t id, const std::string& kept) const;

  std::string m_path;
};

} // namespace host
