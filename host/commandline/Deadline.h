// Stops a script that takes too long.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace host {

class Deadline {
public:
  // When `time` has passed, `stop` is called on a thread of this object's, again and again until it ends: a request
  // made in the instant before a run begins is forgotten by that run. Without a time nothing happens.
  Deadline(std::optional<std::chrono::milliseconds> time, std::function<void()> stop);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

  // [any thread]
  bool HasPassed() const { return m_passed; }

private:
  void Watch(std::chrono::milliseconds time);

  const std::function<void()> m_stop;
  std::atomic<bool> m_passed = false;
  std::mutex m_mutex; // guards m_ending
  std::condition_variable m_changed;
  bool m_ending = false;
  std::thread m_thread; // last: it uses all of the above
};

} // namespace host
