#include "platform/Platform.h"
#include "platform/StackReserve.h"
#include "tests/support/RunOnStack.h"

#include <doctest/doctest.h>

using platform::FreeAboveReserve;
using platform::FreeStack;

namespace {

constexpr std::size_t kKiB = 1024;

// Wine gives no thread less than the first, the sanitizers add to small ones.
constexpr std::size_t kStacks[] = {1024 * kKiB, 2048 * kKiB, 8192 * kKiB};

// As much as reporting an error may need.
[[gnu::noinline]] void Report() {
  volatile char report[10 * kKiB];
  for (std::size_t i = sizeof report; i > 0; --i)
    report[i - 1] = 0;
}

// Uses up all that is free in pieces of about a KiB; returns how many there were.
[[gnu::noinline]] std::size_t UseUp(std::size_t depth) {
  volatile char piece[kKiB];
  piece[0] = 1;
  if (FreeStack() == 0) {
    Report();
    return depth;
  }
  return UseUp(depth + 1) * static_cast<std::size_t>(piece[0]);
}

} // namespace

TEST_CASE("the reserve is a quarter of the stack, within limits") {
  struct Row {
    std::size_t stack;
    std::size_t used;
    std::size_t free;
  };
  const Row rows[] = {
      {64 * kKiB, 0, 48 * kKiB},    {48 * kKiB, 0, 32 * kKiB},     {256 * kKiB, 0, 192 * kKiB},
      {1024 * kKiB, 0, 896 * kKiB}, {8192 * kKiB, 0, 8064 * kKiB}, {1024 * kKiB, 896 * kKiB - 1, 1},
      {1024 * kKiB, 896 * kKiB, 0}, {1024 * kKiB, 1000 * kKiB, 0}, {8 * kKiB, 0, 0},
  };
  for (const Row& row : rows) {
    CAPTURE(row.stack);
    CAPTURE(row.used);
    const std::uintptr_t bottom = 0x10000000;
    CHECK(FreeAboveReserve(bottom, bottom + row.stack, bottom + row.stack - row.used) == row.free);
  }
}

TEST_CASE("the limits are those of the running thread") {
  for (const std::size_t stack : kStacks) {
    CAPTURE(stack);
    std::size_t free = 0;
    RunOnStack(stack, [&] { free = FreeStack(); });
    CHECK(free > stack / 2);
    CHECK(free < stack);
  }
}

TEST_CASE("what is free can be used") {
  for (const std::size_t stack : kStacks) {
    CAPTURE(stack);
    std::size_t depth = 0;
    RunOnStack(stack, [&] { depth = UseUp(0); });
    CHECK(depth > stack / (4 * kKiB)); // sanitizers make the frames larger
    CHECK(depth < stack / kKiB);
  }
  CHECK(UseUp(0) > 0);
}
