#include "platform/Platform.h"

#include <doctest/doctest.h>

#include <chrono>
#include <ctime>

using namespace std::chrono_literals;

TEST_CASE("Now is the local time") {
  const std::time_t before = std::time(nullptr);
  const platform::LocalTime now = platform::Now();
  const std::time_t after = std::time(nullptr);

  std::tm parts{};
  parts.tm_mday = static_cast<int>(now.day);
  parts.tm_mon = static_cast<int>(now.month) - 1;
  parts.tm_year = static_cast<int>(now.year) - 1900;
  parts.tm_hour = static_cast<int>(now.hour);
  parts.tm_min = static_cast<int>(now.minute);
  parts.tm_sec = static_cast<int>(now.second);
  parts.tm_isdst = -1;
  const std::time_t time = std::mktime(&parts);
  CHECK(time >= before - 1); // the two clocks may round differently
  CHECK(time <= after + 1);
}

TEST_CASE("Sleep takes its time") {
  const auto start = std::chrono::steady_clock::now();
  platform::Sleep(40);
  CHECK(std::chrono::steady_clock::now() - start >= 35ms);
}
