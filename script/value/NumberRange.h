// What numbers of a type can be. Numbers are 64-bit patterns, widened by their type.
#pragma once

#include "script/value/DataType.h"

#include <limits>

constexpr std::uint64_t NarrowedTo(DataType type, std::uint64_t bits) {
  if (Is64Bit(type))
    return bits;
  const auto low = static_cast<std::uint32_t>(bits);
  return IsSigned(type) ? static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<std::int32_t>(low))) : low;
}

constexpr bool IsLess(DataType type, std::uint64_t left, std::uint64_t right) {
  return IsSigned(type) ? static_cast<std::int64_t>(left) < static_cast<std::int64_t>(right) : left < right;
}

constexpr std::uint64_t LeastOf(DataType type) {
  if (!IsSigned(type))
    return 0;
  return Is64Bit(type) ? std::uint64_t{1} << 63 : NarrowedTo(type, std::uint64_t{1} << 31);
}

constexpr std::uint64_t LargestOf(DataType type) {
  return IsSigned(type) ? ~LeastOf(type) : NarrowedTo(type, std::numeric_limits<std::uint64_t>::max());
}
