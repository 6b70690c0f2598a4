// What a simulated device says, until its time has come and somebody reads it.
#pragma once

#include "host/channel/sim/Console.h"
#include "host/channel/sim/description/DeviceDescription.h"

#include <deque>
#include <string>
#include <string_view>

namespace host {

// One thing is said after the other. [one thread at a time]
class AnswerQueue {
public:
  static constexpr std::size_t kCapacity = 64 << 10; // bytes that wait; what comes on top is lost

  // `bytesPerSecond` 0: no limit.
  AnswerQueue(Console::Time now, std::uint64_t bytesPerSecond) : m_free(now), m_bytesPerSecond(bytesPerSecond) {}

  // The delay counts from when everything before has been said.
  void Add(Console::Time now, std::string_view bytes, const Pace& pace);
  // Takes up to `capacity` bytes whose time has come.
  std::size_t Take(Console::Time now, char* buffer, std::size_t capacity);
  std::size_t Size() const { return m_size; }

private:
  struct Piece {
    Console::Time due;
    std::string bytes;
  };
  std::deque<Piece> m_pieces;
  std::size_t m_size = 0; // bytes
  Console::Time m_free;   // when all of that is said
  const std::uint64_t m_bytesPerSecond;
};

} // namespace host
