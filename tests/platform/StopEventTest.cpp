#include "platform/Platform.h"

#include <doctest/doctest.h>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;
using platform::StopEvent;

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
