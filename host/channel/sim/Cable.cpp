#include "host/channel/sim/Cable.h"

#include <algorithm>
#include <limits>

namespace host {
namespace {

constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

} // namespace

Cable::Cable(const CableFaults& faults, std::uint32_t seed)
    : m_faults(faults), m_left(faults.cut ? faults.cut->after : kEndless), m_random{std::mt19937(seed),
                                                                                    std::mt19937(seed ^ 0x9E3779B9U)} {}

std::string Cable::Carry(Direction direction, std::string_view bytes) {
  bytes = bytes.substr(0, static_cast<std::size_t>(Spend(direction, bytes.size())));
  std::string arriving;
  arriving.reserve(bytes.size());
  // `std::mt19937` gives the same numbers everywhere, the library's distributions do not.
  const auto [dropped, corrupted] = m_faults.rates[direction];
  std::mt19937& random = m_random[direction];
  for (const char byte : bytes) {
    if (dropped != 0 && random() < dropped)
      continue;
    const bool changes = corrupted != 0 && random() < corrupted;
    arriving += changes ? static_cast<char>(byte ^ (1 << (random() % 8))) : byte;
  }
  return arriving;
}

std::uint64_t Cable::CarryFile(std::uint64_t bytes) {
  return Spend(Direction::kToDevice, bytes);
}

std::uint64_t Cable::BytesLeft(Direction direction) const {
  const bool counts = IsCut() || (m_faults.cut && m_faults.cut->direction.value_or(direction) == direction);
  return counts ? m_left : kEndless;
}

std::uint64_t Cable::Spend(Direction direction, std::uint64_t bytes) {
  const std::uint64_t left = BytesLeft(direction);
  bytes = std::min(bytes, left);
  if (left != kEndless)
    m_left -= bytes;
  return bytes;
}

} // namespace host
