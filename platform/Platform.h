// The seam between the portable part and the operating system. Bodies: win32/ and posix/.
//
// Paths are 8-bit texts with backslashes everywhere. On Windows they go to the system as they are; elsewhere drive "Z:" is
// the root of the file system, so that a script sees the same paths natively and under Wine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Longest full path, in bytes, that the script side resolves.
inline constexpr std::size_t kMaxPath = 261;

// A manual-reset event. Any thread may use any operation.
class StopEvent {
public:
  static constexpr std::uint32_t kForever = 0xFFFFFFFF;

  StopEvent(); // not signalled
  ~StopEvent();
  StopEvent(const StopEvent&) = delete;
  StopEvent& operator=(const StopEvent&) = delete;

  void Set();
  void Reset();
  bool IsSet() const { return Wait(0); }
  // Waits until the event is signalled (true) or the time is over (false).
  bool Wait(std::uint32_t milliseconds) const;

private:
  struct Body;
  std::unique_ptr<Body> m_body;
};

void Sleep(std::uint32_t milliseconds);

// The path made absolute against the current folder, "." and ".." resolved. Nothing when it is longer than kMaxPath or
// cannot be resolved. The file need not exist.
std::optional<std::string> FullPath(const std::string& path);
// Without a trailing backslash unless it is a drive's root; empty when it is longer than kMaxPath.
std::string CurrentFolder();

// A file of raw bytes, closed by its destructor. Failed operations answer false or a short count.
class File {
public:
  enum class Mode {
    kRead,    // must exist
    kUpdate,  // must exist; reading and writing
    kCreate,  // created, or cut to nothing
  };

  static std::optional<File> Open(const std::string& path, Mode mode);

  std::optional<std::uint64_t> Size();
  bool Seek(std::uint64_t offset);
  std::size_t Read(char* buffer, std::size_t size);
  std::size_t Write(const char* data, std::size_t size);
  // Closes and tells whether everything written has reached the system.
  bool Close();

private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  explicit File(std::FILE* file) : m_file(file) {}
  std::unique_ptr<std::FILE, Closer> m_file;
};

// Puts `from` in the place of `to` in one step. On failure `to` is unharmed.
bool ReplaceFile(const std::string& from, const std::string& to);
void RemoveFile(const std::string& path);

struct LocalTime {
  unsigned day, month, year, hour, minute, second;
};
LocalTime Now();

// The part of the calling thread's stack that is still free, from its real limits, less a reserve in which errors can be
// reported and host callbacks run. 0 when the reserve is reached.
std::size_t FreeStack();

} // namespace platform
