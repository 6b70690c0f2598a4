// Times two pieces of work in turns, so that both meet the same moods of the machine.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

// The best of several rounds, in milliseconds.
struct SideBySide {
  double first = 1e300;
  double second = 1e300;
};

template <typename Work>
double MillisecondsOf(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

template <typename First, typename Second>
SideBySide MeasureSideBySide(int rounds, First&& first, Second&& second) {
  SideBySide best;
  for (int round = 0; round < rounds; ++round) {
    best.first = std::min(best.first, MillisecondsOf(first));
    best.second = std::min(best.second, MillisecondsOf(second));
  }
  return best;
}

inline void Print(const char* firstName, const char* secondName, const SideBySide& best) {
  std::printf("%-36s %9.3f ms\n%-36s %9.3f ms\n%-36s %9.1f\n", firstName, best.first, secondName, best.second, "ratio",
              best.first / best.second);
}
