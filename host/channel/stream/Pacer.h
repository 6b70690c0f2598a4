// For devices that lose bytes when they come too fast: what may go out, and when.
#pragma once

#include "host/channel/stream/Link.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string_view>

namespace host {

struct Pace {
  std::chrono::milliseconds afterCharacter{0};
  std::chrono::milliseconds afterLine{0};    // a line ends with CR, LF or CR LF
  std::chrono::nanoseconds characterTime{0}; // that the line itself needs for one

  bool IsFree() const { return afterCharacter.count() == 0 && afterLine.count() == 0; }
  // What may pass between two characters.
  std::chrono::milliseconds LongestPause() const { return std::max(afterCharacter, afterLine); }
};

// Of one connection. Where the line has a speed, a pause begins when the system has sent what is in front of it;
// elsewhere when the system has it, since a distant system may take long to tell that it has arrived.
class Pacer {
public:
  explicit Pacer(const Pace& pace) : m_pace(pace) {}

  // The front of `unsent` that may go now. `unsent` begins with the first byte that is not known to be sent; what was
  // let through before stays so.
  std::string_view LetThrough(std::string_view unsent, LinkClock::time_point now);
  // So many bytes at the front have been sent.
  void Sent(std::size_t count) { m_through -= std::min(count, m_through); }
  // When more of it may go, without anything being sent before.
  LinkClock::time_point NextTime(std::string_view unsent) const;

private:
  bool IsHeld() const { return m_pace.characterTime.count() != 0 && m_through != 0; }
  std::size_t PieceOf(std::string_view waiting) const;

  const Pace m_pace;
  std::size_t m_through = 0; // bytes that were let through and are not sent
  LinkClock::time_point m_next{};
};

} // namespace host
