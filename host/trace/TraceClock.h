// The time in a trace.
#pragma once

#include <chrono>
#include <cstdint>

namespace host {

// Starts when it is made; copies go on together. [any thread]
class TraceClock {
public:
  // Microseconds since the start; never goes back.
  std::uint64_t Now() const { return Microseconds(std::chrono::steady_clock::now() - m_start); }
  // Wall time of the start, in microseconds since 1970 (UTC).
  std::int64_t Start() const { return static_cast<std::int64_t>(Microseconds(m_wallStart.time_since_epoch())); }

private:
  template <class Duration>
  static std::uint64_t Microseconds(Duration time) {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
  }

  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  std::chrono::system_clock::time_point m_wallStart = std::chrono::system_clock::now();
};

} // namespace host
