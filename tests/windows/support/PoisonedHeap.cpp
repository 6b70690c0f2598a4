#include "tests/windows/support/PoisonedHeap.h"

#include <doctest/doctest.h>

#include <cstring>
#include <deque>
#include <malloc.h>
#include <mutex>
#include <string_view>

namespace {

constexpr int kPattern = 0xDD;
constexpr std::size_t kKept = 5000; // blocks

std::mutex g_mutex;
std::deque<void*> g_kept; // under the mutex, oldest first
void (*g_free)(void*);

void PoisonAndKeep(void* block) {
  if (!block)
    return;
  std::memset(block, kPattern, _msize(block));
  const std::lock_guard guard(g_mutex);
  g_kept.push_back(block);
  if (g_kept.size() > kKept) {
    g_free(g_kept.front());
    g_kept.pop_front();
  }
}

} // namespace

// Through the module's table of imports, in which the C library's free stands by name.
void PoisonFreedMemory(HMODULE module) {
  auto* const image = reinterpret_cast<char*>(module);
  const auto* const head =
      reinterpret_cast<IMAGE_NT_HEADERS*>(image + reinterpret_cast<IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(
      image + head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
  bool found = false;
  for (; library->Name != 0; ++library) {
    const auto* name = reinterpret_cast<ULONGLONG*>(image + library->OriginalFirstThunk);
    auto* address = reinterpret_cast<void**>(image + library->FirstThunk);
    for (; *name != 0; ++name, ++address) {
      if (IMAGE_SNAP_BY_ORDINAL64(*name) ||
          std::string_view(reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(image + *name)->Name) != "free")
        continue;
      found = true;
      if (*address == reinterpret_cast<void*>(PoisonAndKeep))
        continue;
      g_free = reinterpret_cast<void (*)(void*)>(*address);
      DWORD before = 0;
      VirtualProtect(address, sizeof(*address), PAGE_READWRITE, &before);
      *address = reinterpret_cast<void*>(PoisonAndKeep);
      VirtualProtect(address, sizeof(*address), before, &before);
    }
  }
  REQUIRE_MESSAGE(found, "the module imports free");
}
