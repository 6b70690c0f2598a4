// Results on standard output, messages on standard error.
#pragma once

#include "host/support/Files.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace host {

// Standard output as a script's sink, byte for byte. A piece goes out at once when none went out shortly before;
// otherwise it waits for what follows, 10 ms at the longest, because a system call for each piece of a long output
// takes longer than the script. So would a lock: whoever writes puts a piece behind those that wait and then moves
// their end, and the thread that shows them in time takes what it finds. [one thread at a time]
class StandardOutput {
public:
  StandardOutput();
  // Whatever waits goes out.
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  // False once anything could not be written.
  bool Write(std::string_view bytes);
  // What waits goes out now: before anything else speaks to the same person or device. False as above.
  bool Show();
  // As if writing had failed. [any thread]
  void GiveUp() { m_failed = true; }
  // Of what went out so far. [any thread]
  bool Failed() const { return m_failed; }
  // Whether the next byte begins a line.
  bool AtLineStart() const { return m_atLineStart; }

private:
  using Clock = std::chrono::steady_clock;

  // Sees to it that somebody watches what has begun to wait.
  void BeginWatch();
  bool IsAnythingHeld() const { return m_shownEnd != m_heldEnd.load(std::memory_order_acquire); }
  // These with the mutex taken.
  void ShowHeld();
  void WriteOut(std::string_view bytes);
  // The thread's body.
  void ShowInTime();

  bool m_atLineStart = true;
  std::atomic<bool> m_failed = false;
  const std::unique_ptr<char[]> m_held;
  std::atomic<std::size_t> m_heldEnd = 0;
  std::atomic<bool> m_watched = false; // the thread looks at what is held before 10 ms are over
  std::mutex m_mutex;                  // guards what follows, and the stream
  std::size_t m_shownEnd = 0;          // what is held in front of it has gone out
  Clock::time_point m_lastShown{};
  bool m_ending = false;
  std::condition_variable m_changed;
  std::thread m_thread; // started when something first waits
};

// The exit code of a program whose results went to `output`: 0, or kExitStream, which is told on standard error.
int ExitCodeOf(std::string_view program, StandardOutput& output);

// Scripts of 4 GiB or more are refused.
inline constexpr std::uint64_t kLongestScript = 0xFFFFFFFF;

// A script from standard input, until its end; no more than the longest.
ReadResult ReadStandardInput();

// Lines, each with its end, on standard error.
void PrintLines(std::string_view lines);

// "PROGRAM: TEXT" on a line of standard error.
void PrintMessage(std::string_view program, std::string_view text);

} // namespace host
