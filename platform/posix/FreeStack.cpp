#include "platform/Platform.h"
#include "platform/StackReserve.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

namespace {

// A stack without a limit, or with a huge one, is used no further: endless recursion is to end before the memory does.
constexpr std::uintptr_t kMostUsed = std::uintptr_t{64} << 20;

struct Limits {
  std::uintptr_t bottom = 0;
  std::uintptr_t top = 0;
};

// Address space in bytes that the process may still take; the largest number without a limit (`ulimit -v`).
std::uintptr_t FreeAddressSpace() {
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
    return UINTPTR_MAX;
  char text[32] = "";
  const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  const ssize_t length = file >= 0 ? read(file, text, sizeof text - 1) : -1;
  if (file >= 0)
    close(file);
  const std::uintptr_t used = length > 0 ? std::strtoull(text, nullptr, 10) * static_cast<unsigned>(getpagesize()) : 0;
  return used != 0 && used < limit.rlim_cur ? limit.rlim_cur - used : 0;
}

bool IsFirstThread() {
  return syscall(SYS_gettid) == getpid();
}

std::uintptr_t CurrentFrame() {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

// The first thread's stack grows as it is used, and the process dies when there is no address space left for that. So
// it is grown at once, by a touch of its end; under a limit to a half of what is left at the most, the rest is for the
// script.
Limits Claimed(Limits limits) {
  const std::uintptr_t space = FreeAddressSpace();
  if (space == UINTPTR_MAX)
    return limits;
  const std::uintptr_t here = CurrentFrame();
  const std::uintptr_t lowest = here - std::min(here - limits.bottom, space / 2);
  limits.bottom = std::max(limits.bottom, lowest);
  *reinterpret_cast<volatile char*>(limits.bottom) = 0;
  return limits;
}

// Of the first thread, whose stack ends behind the program's name; the system leaves at least the largest room that is
// used here free below. The C library would read the process's memory map, which takes as long as a short script.
Limits FirstStackLimits() {
  const auto page = static_cast<std::uintptr_t>(getpagesize());
  const std::uintptr_t last = std::max<std::uintptr_t>(getauxval(AT_EXECFN), CurrentFrame());
  const std::uintptr_t top = (last / page + 1) * page;
  rlimit limit{};
  getrlimit(RLIMIT_STACK, &limit);
  return {top - std::min<std::uintptr_t>(limit.rlim_cur, kMostUsed), top};
}

// Asks the system. No limits when that fails for lack of memory.
Limits AskStackLimits() {
  if (IsFirstThread())
    return Claimed(FirstStackLimits());
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
  return FreeAboveReserve(t_limits.bottom, t_limits.top, CurrentFrame());
}

} // namespace platform
