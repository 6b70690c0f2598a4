// What the engine takes for a script, measured inside the run: without starting a process or loading a module.
#pragma once

#include "bench/SideBySide.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

// Counts a script's output, and makes nothing else of it.
inline void CountOutput(void* bytes, const char* text) {
  *static_cast<std::uint64_t*>(bytes) += std::char_traits<char>::length(text);
}

// `run` executes a text once (null: to be thrown away); false when that fails. Prints "FILE MILLISECONDS BYTES" for
// each file: the best of several rounds, each long enough for the clock, and what one execution prints. Returns the
// program's exit code.
template <typename Run>
int PrintEngineTimes(int count, char** files, Run&& run) {
  constexpr double kRoundMs = 5;
  constexpr int kRounds = 7;
  bool sound = true;
  for (char** file = files; file != files + count; ++file) {
    std::ifstream stream(*file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    std::uint64_t bytes = 0;
    const auto once = [&] {
      bytes = 0;
      sound = run(text, &bytes) && sound;
    };
    once(); // warms up
    const int times = 1 + static_cast<int>(kRoundMs / MillisecondsOf(once));
    double best = 1e300;
    for (int round = 0; round < kRounds; ++round)
      best = std::min(best, MillisecondsOf([&] {
                              for (int i = 0; i < times; ++i)
                                once();
                            }) / times);
    std::printf("%s %.6f %llu\n", *file, best, static_cast<unsigned long long>(bytes));
    if (!stream || !sound) {
      std::fprintf(stderr, "%s cannot be read, or fails\n", *file);
      return 1;
    }
  }
  return 0;
}
