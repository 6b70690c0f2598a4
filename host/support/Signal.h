// A wake-up that a thread can wait for together with its input and output. Bodies: win32/ and posix/.
#pragma once

#include <cstdint>

namespace host {

// Stays raised until it is cleared; raised twice is raised once.
class Signal {
public:
  Signal(); // throws std::bad_alloc when the system has none left
  ~Signal();
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  void Raise() noexcept; // [any thread]
  void Clear() noexcept; // [the thread that waits]

  // What the system waits for: a descriptor that becomes readable, or the handle of an event.
  std::intptr_t Native() const { return m_native; }

private:
  const std::intptr_t m_native;
};

} // namespace host
