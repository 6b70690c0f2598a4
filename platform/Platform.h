// The seam between the portable part and the operating system. Bodies: win32/ and posix/.
//
// Paths are 8-bit texts with backslashes everywhere. On Windows they go to the system as they are; elsewhere drive "Z:"
// is the root of the file system, so that a script sees the same paths natively and under Wine.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

// Longest full path, in bytes, that the script side resolves.
inline constexpr std::size_t kMaxPath = 261;

// A manual-reset event. Any thread may use any operation, but `Reset` belongs to a moment when nobody waits.
class StopEvent {
public:
  static constexpr std::uint32_t kForever = 0xFFFFFFFF;

  StopEvent(); // not signalled; std::bad_alloc when the system has no event left
  ~StopEvent();
  StopEvent(const StopEvent&) = delete;
  StopEvent& operator=(const StopEvent&) = delete;

  // Natively also from a signal handler.
  void Set();
  // Sets the event and tells that nobody wants the rest of the run: it ends at the next loop round, call or
  // built-in function.
  void Abandon() {
    m_abandoned.store(true, std::memory_order_release);
    Set();
  }
  void Reset();
  // Asked in every round of a script's loops: a plain read, no system call.
  bool IsSet() const { return m_set.load(std::memory_order_acquire); }
  bool IsAbandoned() const { return m_abandoned.load(std::memory_order_acquire); }
  // Waits until the event is signalled (true) or the time is over (false).
  bool Wait(std::uint32_t milliseconds) const;

private:
  struct Body;
  std::unique_ptr<Body> m_body;
  std::atomic<bool> m_set{false};
  std::atomic<bool> m_abandoned{false};
};
static_assert(std::atomic<bool>::is_always_lock_free); // a signal handler must not take a lock

void Sleep(std::uint32_t milliseconds);

// The path made absolute against the current folder, "." and ".." resolved. Nothing when it is longer than kMaxPath or
// cannot be resolved. The file need not exist.
std::optional<std::string> FullPath(const std::string& path);
// Never with a trailing backslash, so that a drive's root is "C:" here; empty when it is longer than kMaxPath.
std::string CurrentFolder();

// Tells whether a byte begins a character of two bytes in the code page of paths. Natively none does: names are UTF-8,
// where no part of a longer character looks like a character of its own.
bool IsLeadByte(char byte);

// A file of raw bytes, closed by its destructor. Nothing is held back in buffers of its own: a count is what the system
// took or gave, and work in pieces of useful size is the caller's. Failed operations answer false, nothing or a short
// count. One thread at a time.
class File {
public:
  enum class Mode {
    kRead,   // must exist
    kUpdate, // created when it is not there, otherwise as it is; reading and writing
    kCreate, // created, or cut to nothing; writing only
  };

  // Natively only regular files can be opened: a pipe or a terminal would block a script where no stop reaches it.
  static std::optional<File> Open(const std::string& path, Mode mode);
  File(File&& other) noexcept : m_handle(std::exchange(other.m_handle, kClosed)), m_sound(other.m_sound) {}
  File& operator=(File&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    std::swap(m_sound, other.m_sound);
    return *this;
  }
  ~File() { Close(); }

  std::optional<std::uint64_t> Size();
  // Seeking past the end is fine: the file grows with the next write.
  bool Seek(std::uint64_t offset);
  std::size_t Read(char* buffer, std::size_t size);
  // Up to `count` bytes. Throws std::bad_alloc.
  std::string ReadText(std::size_t count);
  // The same, for a count that is only a limit: takes no more memory than there are bytes.
  std::string ReadToEnd(std::size_t limit);
  std::size_t Write(const char* data, std::size_t size);
  // Tells whether everything since opening went well, closing included. False when closed already.
  bool Close();

private:
  static constexpr std::intptr_t kClosed = -1;

  explicit File(std::intptr_t handle) : m_handle(handle) {}

  std::intptr_t m_handle; // the system's
  bool m_sound = true;    // no read or write has failed
};

// Makes `bytes` the whole content of a file, in one step: what was there before is unharmed by a failure. The access
// rights of an existing file stay, and a link goes on to name its file, which is the one written to. Nothing is written
// in the place of a file that is write-protected or no regular file. May throw std::bad_alloc.
bool WriteWholeFile(const std::string& path, std::string_view bytes);

struct LocalTime {
  unsigned day, month, year, hour, minute, second;
};
LocalTime Now();

// The part of the calling thread's stack that is still free, from its real limits, less a reserve in which errors can
// be reported and host callbacks run. 0 when the reserve is reached.
std::size_t FreeStack();

} // namespace platform
