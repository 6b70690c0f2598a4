// Turns Ctrl+C, and whatever else asks the process to end, into a stop request.
#pragma once

#include "host/support/Interrupt.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

class InterruptWatcher {
public:
  // After the first interrupt, `stop` is called on a thread of the watcher's, again and again until the watcher ends: a
  // request made in the instant before a run begins is forgotten by that run, one of the next ones is not.
  explicit InterruptWatcher(std::function<void(const InterruptCause&)> stop);
  ~InterruptWatcher();
  InterruptWatcher(const InterruptWatcher&) = delete;
  InterruptWatcher& operator=(const InterruptWatcher&) = delete;

  // What has come; null when nothing has. [any thread]
  const char* Interrupted() const { return m_interrupted; }

private:
  void Watch();

  const std::function<void(const InterruptCause&)> m_stop;
  Interrupt m_interrupt;
  std::atomic<const char*> m_interrupted = nullptr;
  std::mutex m_mutex; // guards m_ending
  std::condition_variable m_changed;
  bool m_ending = false;
  std::thread m_thread; // last: it uses all of the above
};

} // namespace host
