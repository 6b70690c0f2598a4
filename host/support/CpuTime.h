// How long this process has computed. Bodies: win32/ and posix/.
#pragma once

#include <cstdint>

namespace host {

// Microseconds, all threads together.
std::uint64_t ProcessCpuTime();

} // namespace host
