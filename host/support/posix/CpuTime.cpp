#include "host/support/CpuTime.h"

#include <ctime>

namespace host {

std::uint64_t ProcessCpuTime() {
  timespec time = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1000000 + static_cast<std::uint64_t>(time.tv_nsec) / 1000;
}

} // namespace host
