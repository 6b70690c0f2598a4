#include "host/support/CpuTime.h"

#include <windows.h>

namespace host {
namespace {

// From units of 100 ns.
std::uint64_t Microseconds(const FILETIME& time) {
  return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 10;
}

} // namespace

std::uint64_t ProcessCpuTime() {
  FILETIME created{}, ended{}, kernel{}, user{};
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  return Microseconds(kernel) + Microseconds(user);
}

} // namespace host
