#include "platform/LargeMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace platform {

void ExpectFilling(void* memory, std::size_t size) {
  constexpr std::size_t kWorthwhile = std::size_t{4} << 20;
  if (size < kWorthwhile)
    return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto start = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t firstPage = (start + page - 1) / page * page;
  madvise(reinterpret_cast<void*>(firstPage), start + size - firstPage, MADV_HUGEPAGE);
}

} // namespace platform
