// The line between a simulated device and whoever talks to it: loses bytes, changes them, is cut.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace host {

struct CableFaults {
  enum Direction : std::uint8_t { kToDevice, kFromDevice };
  // Of the bytes of a direction, in parts of 2^32.
  struct Rates {
    std::uint64_t dropped = 0;
    std::uint64_t corrupted = 0;
  };
  struct Cut {
    std::uint64_t after;                // bytes
    std::optional<Direction> direction; // otherwise bytes of both count
  };

  std::array<Rates, 2> rates;
  std::optional<Cut> cut;

  bool AreRandom() const {
    return (rates[0].dropped | rates[0].corrupted | rates[1].dropped | rates[1].corrupted) != 0;
  }
};

// What becomes of a byte depends on the seed and on its place among those of its direction, not on the clock or on how
// the bytes come. [one thread at a time]
class Cable {
public:
  using Direction = CableFaults::Direction;

  Cable(const CableFaults& faults, std::uint32_t seed);

  // What arrives of these bytes at the other end.
  std::string Carry(Direction direction, std::string_view bytes);
  // Carries the bytes of a file, whose transfer protects them: only the cut counts. How many of them arrive.
  std::uint64_t CarryFile(std::uint64_t bytes);
  // How many bytes of a direction can pass until the cut; more than anybody has without one.
  std::uint64_t BytesLeft(Direction direction) const;
  bool IsCut() const { return m_left == 0; }

private:
  // How many of these bytes pass.
  std::uint64_t Spend(Direction direction, std::uint64_t bytes);

  const CableFaults m_faults;
  std::uint64_t m_left; // bytes until the cut
  std::array<std::mt19937, 2> m_random;
};

} // namespace host
