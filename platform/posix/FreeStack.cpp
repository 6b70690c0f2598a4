#include "platform/Platform.h"
#include "platform/StackReserve.h"

#include <pthread.h>

namespace platform {

namespace {

// A stack without a limit, or with a huge one, is used no further: endless recursion is to end before the memory does.
constexpr std::uintptr_t kMostUsed = std::uintptr_t{64} << 20;

struct Limits {
  std::uintptr_t bottom = 0;
  std::uintptr_t top = 0;
};

// Asks the system, which for a process's first thread means reading its memory map. No limits when that fails for lack
// of memory.
Limits AskStackLimits() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    return {};
  void* address = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;
  pthread_attr_getstack(&attributes, &address, &size);
  pthread_attr_getguardsize(&attributes, &guard);
  pthread_attr_destroy(&attributes);
  const auto bottom = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t top = bottom + size;
  return {size > kMostUsed ? top - kMostUsed : bottom + guard, top};
}

thread_local constinit Limits t_limits;

} // namespace

std::size_t FreeStack() {
  if (t_limits.top == 0) {
    t_limits = AskStackLimits();
    if (t_limits.top == 0)
      return 0;
  }
  return FreeAboveReserve(t_limits.bottom, t_limits.top, reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
}

} // namespace platform
