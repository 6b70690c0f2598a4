// A file that one program at a time writes, and nobody writes while it is played. Bodies: win32/ and posix/.
#pragma once

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace host {

// Others may read it meanwhile; nobody else can open it to write, in this process or another one, until it is closed.
// A device or a pipe has no beginning and cannot be cleared. [one thread at a time]
class SoleFile {
public:
  // A path as a user typed it; the file is made if need be, and what is in it stays. Otherwise the system's reason.
  static tl::expected<SoleFile, std::string> Open(const std::string& path);
  // Only holds a file against being opened as above; several may do that at once.
  static tl::expected<SoleFile, std::string> Hold(const std::string& path);
  ~SoleFile() { Close(); }
  SoleFile(SoleFile&& other) noexcept : m_native(std::exchange(other.m_native, kNone)) {}
  SoleFile& operator=(SoleFile&&) = delete;

  // Up to `size` bytes from its start. To be asked for before anything is written.
  std::string Beginning(std::size_t size) const;
  bool Clear();
  // Writes behind what is there. 0, or the system's error code; some of the bytes may have been written then.
  int Write(std::string_view bytes);

private:
  static constexpr std::intptr_t kNone = -1;
  // Mode and way are the system's.
  static tl::expected<SoleFile, std::string> OpenLocked(const std::string& path, int mode, int way);
  explicit SoleFile(std::intptr_t native) : m_native(native) {}
  void Close();

  std::intptr_t m_native; // a descriptor or a handle
};

} // namespace host
