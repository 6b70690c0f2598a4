// Lets memory run out at a chosen allocation.
#pragma once

#include <cstddef>

// How memory is refused once it has run out.
enum class MemoryShortage {
  kOnce,   // one allocation fails, the next ones do not
  kLasting // no allocation succeeds any more
};

// While one exists, the allocations of this thread are counted, and from the one of number `first` (from 0) on they
// fail as `shortage` says. One object at a time.
class FailingMemory {
public:
  FailingMemory(std::size_t first, MemoryShortage shortage);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  // Whether an allocation has failed.
  bool HasFailed() const;
};

// While one exists, memory is there: for the test's own work in between.
class MemoryAgain {
public:
  MemoryAgain();
  ~MemoryAgain();
  MemoryAgain(const MemoryAgain&) = delete;
  MemoryAgain& operator=(const MemoryAgain&) = delete;
};
