#include "platform/Platform.h"
#include "platform/StackReserve.h"

#include <doctest/doctest.h>

#include <chrono>
#include <ctime>
#include <string>
#include <thread>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

std::string SystemTime() {
  const std::time_t now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, "%d.%m.%Y %H:%M:%S", std::localtime(&now));
  return text;
}

std::string PlatformTime() {
  const platform::LocalTime now = platform::Now();
  char text[32];
  std::snprintf(text, sizeof text, "%02u.%02u.%04u %02u:%02u:%02u", now.day, now.month, now.year, now.hour, now.minute,
                now.second);
  return text;
}

} // namespace

TEST_CASE("the local time is the system's") {
  std::string before = SystemTime();
  std::string now = PlatformTime();
  for (int attempt = 0; attempt < 5 && before != now; ++attempt) { // a second may have ended between the two
    before = SystemTime();
    now = PlatformTime();
  }
  CHECK(now == before);
}

TEST_CASE("a stop event wakes who waits, or lets the time pass") {
  platform::StopEvent event;
  CHECK_FALSE(event.Wait(0));
  const auto start = Clock::now();
  CHECK_FALSE(event.Wait(30));
  platform::Sleep(30);
  CHECK(Clock::now() - start >= 55ms);

  std::thread setter([&] {
    platform::Sleep(5);
    event.Set();
  });
  CHECK(event.Wait(30000));
  CHECK(event.Wait(platform::StopEvent::kForever));
  setter.join();
  CHECK(event.IsSet());
  CHECK_FALSE(event.IsAbandoned());
  event.Abandon();
  CHECK(event.IsAbandoned());
  event.Reset();
  CHECK_FALSE(event.IsSet());
  CHECK_FALSE(event.IsAbandoned());
  CHECK_FALSE(event.Wait(0));
}

TEST_CASE("the stack's reserve is a quarter, within its bounds") {
  constexpr std::uintptr_t kKiB = 1024;
  constexpr std::uintptr_t kBottom = 1 << 30;
  const auto reserve = [](std::uintptr_t size) {
    const std::uintptr_t top = kBottom + size;
    return size - platform::FreeAboveReserve(kBottom, top, top);
  };
  CHECK(reserve(32 * kKiB) == 16 * kKiB);
  CHECK(reserve(256 * kKiB) == 64 * kKiB);
  CHECK(reserve(1024 * kKiB) == 128 * kKiB);
  const std::uintptr_t floor = kBottom + 64 * kKiB;
  CHECK(platform::FreeAboveReserve(kBottom, kBottom + 256 * kKiB, floor) == 0);
  CHECK(platform::FreeAboveReserve(kBottom, kBottom + 256 * kKiB, floor + 1) == 1);
  CHECK(platform::FreeAboveReserve(kBottom, kBottom + 256 * kKiB, floor - 1) == 0);
}
