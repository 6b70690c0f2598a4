#include "tests/memory/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

struct State {
  bool counting = false;
  bool failed = false;
  MemoryShortage shortage = MemoryShortage::kOnce;
  std::size_t left = 0; // allocations until the first that fails
  int pauses = 0;
};
thread_local constinit State t_state;

bool Refuse() {
  if (!t_state.counting || t_state.pauses != 0)
    return false;
  if (t_state.left != 0) {
    --t_state.left;
    return false;
  }
  const bool first = !t_state.failed;
  t_state.failed = true;
  return first || t_state.shortage == MemoryShortage::kLasting;
}

} // namespace

FailingMemory::FailingMemory(std::size_t first, MemoryShortage shortage) {
  t_state = {true, false, shortage, first, 0};
}

FailingMemory::~FailingMemory() {
  t_state.counting = false;
}

bool FailingMemory::HasFailed() const {
  return t_state.failed;
}

MemoryAgain::MemoryAgain() {
  ++t_state.pauses;
}

MemoryAgain::~MemoryAgain() {
  --t_state.pauses;
}

// The program's own, for every allocation in it.
void* operator new(std::size_t size) {
  if (!Refuse()) {
    if (void* const memory = std::malloc(size != 0 ? size : 1))
      return memory;
  }
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
