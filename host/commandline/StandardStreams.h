// Results on standard output, messages on standard error.
#pragma once

#include "host/support/Files.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace host {

// Standard output as a script's sink, byte for byte. A piece goes out at once when none went out shortly before;
// otherwise it waits for what follows, 10 ms at the longest, because a system call for each piece of a long output
// takes longer than the script.
class StandardOutput {
public:
  StandardOutput() = default;
  // Whatever waits goes out.
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  // False once anything could not be written.
  bool Write(std::string_view bytes);
  // What waits goes out now: before anything else speaks to the same person or device. False as above.
  bool Show();
  // As if writing had failed.
  void GiveUp() { m_failed = true; }
  // Of what went out so far.
  bool Failed() const { return m_failed; }
  // Whether the next byte begins a line.
  bool AtLineStart() const { return m_atLineStart; }

private:
  using Clock = std::chrono::steady_clock;

  void ShowLocked();
  void ShowInTime();

  bool m_atLineStart = true;
  std::atomic<bool> m_failed = false;
  std::mutex m_mutex; // guards what follows
  std::string m_pending;
  Clock::time_point m_lastShown{};
  bool m_ending = false;
  std::condition_variable m_changed;
  std::thread m_thread; // shows what waits too long; started when something first waits
};

// The exit code of a program whose results went to `output`: 0, or kExitStream, which is told on standard error.
int ExitCodeOf(std::string_view program, StandardOutput& output);

// Scripts of 4 GiB or more are refused.
inline constexpr std::uint64_t kLongestScript = 0xFFFFFFFF;

// A script from standard input, until its end; no more than the longest.
ReadResult ReadStandardInput();

// "PROGRAM: TEXT" on a line of standard error.
void PrintMessage(std::string_view program, std::string_view text);

} // namespace host
