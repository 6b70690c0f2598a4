// How much of a thread's stack is kept back for reporting errors and for the host's callbacks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace platform {

// What is free above the reserve when the stack spans `bottom` up to `top` and is used down to `current`. The reserve
// is a quarter of the stack, within 16 and 128 KiB: a worker's small stack still gets somewhere, a large one leaves a
// host's callback plenty.
inline std::size_t FreeAboveReserve(std::uintptr_t bottom, std::uintptr_t top, std::uintptr_t current) {
  constexpr std::uintptr_t kKiB = 1024;
  const std::uintptr_t reserve = std::clamp((top - bottom) / 4, 16 * kKiB, 128 * kKiB);
  const std::uintptr_t floor = bottom + reserve;
  return current > floor ? current - floor : 0;
}

} // namespace platform
