#include "platform/Platform.h"

#include <doctest/doctest.h>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;
using platform::StopEvent;

TEST_CASE("a stop event stays set until it is reset") {
  StopEvent event;
  CHECK_FALSE(event.IsSet());
  CHECK_FALSE(event.Wait(0));

  event.Set();
  event.Set();
  CHECK(event.IsSet());
  CHECK(event.Wait(0));
  CHECK(event.Wait(StopEvent::kForever));

  event.Reset();
  CHECK_FALSE(event.IsSet());
  CHECK_FALSE(event.Wait(0));

  event.Set();
  CHECK(event.Wait(0));
}

TEST_CASE("a wait lasts as long as it was asked to") {
  const StopEvent event;
  const auto start = std::chrono::steady_clock::now();
  CHECK_FALSE(event.Wait(40));
  CHECK(std::chrono::steady_clock::now() - start >= 35ms);
}

TEST_CASE("setting the event ends every wait, the unlimited one too") {
  for (const std::uint32_t limit : {60000u, 0x80000000u, StopEvent::kForever}) {
    CAPTURE(limit);
    StopEvent event;
    bool ended = false;
    std::thread waiter([&] { ended = event.Wait(limit); });
    std::this_thread::sleep_for(20ms); // most likely it waits by now; both orders must work
    const auto start = std::chrono::steady_clock::now();
    event.Set();
    waiter.join();
    CHECK(ended);
    CHECK(std::chrono::steady_clock::now() - start < 10s);
  }
}
