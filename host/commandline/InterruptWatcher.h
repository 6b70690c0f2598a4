// Turns Ctrl+C into a stop request.
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
  // After the first Ctrl+C, `stop` is called on a thread of the watcher's, again and again until the watcher ends: a
  // request made in the instant before a run begins is forgotten by that run, one of the next ones is not.
  explicit InterruptWatcher(std::function<void()> stop);
  ~InterruptWatcher();
  InterruptWatcher(const InterruptWatcher&) = delete;
  InterruptWatcher& operator=(const InterruptWatcher&) = delete;

  bool Interrupted() const { return m_interrupted; } // [any thread]

private:
  void Watch();

  const std::function<void()> m_stop;
  Interrupt m_interrupt;
  std::atomic<bool> m_interrupted = false;
  std::mutex m_mutex; // guards m_ending
  std::condition_variable m_changed;
  bool m_ending = false;
  std::thread m_thread; // last: it uses all of the above
};

} // namespace host
