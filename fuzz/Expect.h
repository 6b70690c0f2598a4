// What a fuzzer demands of the code under test.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the process when `fact` does not hold, so that the fuzzer keeps the input.
inline void Expect(bool fact, const char* what) {
  if (!fact) {
    std::fprintf(stderr, "expected: %s\n", what);
    std::abort();
  }
}
