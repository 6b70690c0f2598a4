// A file that grows by lines while a run goes on.
#pragma once

#include "host/support/SoleFile.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace host {

// A thread writes them, so that nobody waits for the disk; whatever ends the process, what is older than `patience` and
// the time that the disk takes stands in the file. Where it cannot be written any more, lines are dropped. [any thread]
class LineFile {
public:
  // Writes behind what is there. `onFailure` hears the system's reason, once, on the file's thread.
  LineFile(SoleFile file, std::chrono::milliseconds patience, std::function<void(const std::string& reason)> onFailure);
  // Writes what is left.
  ~LineFile();
  LineFile(const LineFile&) = delete;
  LineFile& operator=(const LineFile&) = delete;

  // `append` puts whole lines behind a std::string. Without effect when memory runs out; waits while too much is
  // waiting to be written.
  template <class Append>
  void Add(Append append) noexcept {
    try {
      std::unique_lock lock(m_mutex);
      m_written.wait(lock, [this] { return m_failed || m_pending.size() < kTooMuch; });
      if (m_failed)
        return;
      const bool wasDue = IsDue();
      append(m_pending);
      if (!wasDue && IsDue())
        m_wake.notify_one();
    } catch (const std::exception&) {
      // The run matters more than what is written about it.
    }
  }

private:
  static constexpr std::size_t kMuch = 65536;              // bytes that are written at once
  static constexpr std::size_t kTooMuch = 8 * 1024 * 1024; // bytes that wait before those who add more do

  bool IsDue() const { return m_pending.size() >= (m_patience.count() == 0 ? 1 : kMuch); }
  void WriteInTime();

  SoleFile m_file; // the thread's while it runs
  const std::chrono::milliseconds m_patience;
  const std::function<void(const std::string&)> m_onFailure;
  std::mutex m_mutex;    // guards the fields below
  std::string m_pending; // lines
  bool m_failed = false;
  bool m_ending = false;
  std::condition_variable m_wake;    // something is due, or the end
  std::condition_variable m_written; // some of it is
  std::thread m_thread;
};

} // namespace host
