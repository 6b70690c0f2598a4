// What FreeStack promises must be there also where the address space ends before the stack's limit (`ulimit -v`): the
// first thread's stack grows as it is used, and the process dies when it cannot. A program of its own, without
// sanitizers, whose shadow memory would not fit.
#include "platform/Platform.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

namespace {

constexpr rlim_t kStackLimit = 8 << 20;
constexpr rlim_t kAddressSpaceLeft = 4 << 20;
constexpr std::size_t kFrame = 4096;

bool Limit(int resource, rlim_t bytes) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0)
    return false;
  limit.rlim_cur = bytes;
  return setrlimit(resource, &limit) == 0;
}

rlim_t AddressSpaceUsed() {
  unsigned long pages = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  if (!file || std::fscanf(file, "%lu", &pages) != 1)
    return 0;
  std::fclose(file);
  return pages * static_cast<rlim_t>(getpagesize());
}

// Uses the stack as long as there is some. How many bytes that were.
[[gnu::noinline]] std::size_t Descend() {
  volatile char frame[kFrame];
  frame[0] = 0;
  const std::size_t below = platform::FreeStack() > 0 ? Descend() : 0;
  frame[kFrame - 1] = frame[0]; // so that this is no loop
  return below + kFrame;
}

} // namespace

int main() {
  const rlim_t used = AddressSpaceUsed();
  if (used == 0 || !Limit(RLIMIT_STACK, kStackLimit) || !Limit(RLIMIT_AS, used + kAddressSpaceLeft)) {
    std::puts("the limits cannot be set");
    return 1;
  }
  const std::size_t bytes = Descend();
  std::printf("%zu bytes of stack were used\n", bytes);
  return bytes >= kAddressSpaceLeft / 4 ? 0 : 1;
}
