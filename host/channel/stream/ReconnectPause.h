// How long to leave a lost line alone between two attempts to open it again.
#pragma once

#include <algorithm>
#include <chrono>

namespace host {

// Doubles with each attempt, up to a bound.
class ReconnectPause {
public:
  static constexpr std::chrono::milliseconds kShortest{100};
  static constexpr std::chrono::milliseconds kLongest{2000};

  std::chrono::milliseconds Next() {
    const auto pause = m_next;
    m_next = std::min(2 * m_next, kLongest);
    return pause;
  }
  // The line has proved good.
  void Reset() { m_next = kShortest; }

private:
  std::chrono::milliseconds m_next = kShortest;
};

} // namespace host
