#include "tests/host/Device.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace host;

namespace {

using std::chrono::steady_clock;

int g_owners[2];
void* const kFirst = &g_owners[0];
void* const kSecond = &g_owners[1];
constexpr std::uint32_t kLong = 10000; // ms; longer than any of these tests should ever wait

} // namespace

TEST_CASE("lock: locks of one owner are counted on whatever thread, others wait their time") {
  const auto channel = MakeDevice();
  REQUIRE(channel->Lock(kFirst, 0) == 0);
  std::int32_t nested = -1;
  std::thread([&] { nested = channel->Lock(kFirst, 0); }).join();
  CHECK(nested == 0);

  for (int held = 2; held > 0; --held) {
    CHECK(channel->Lock(kSecond, 0) == kChannelLocked);
    CHECK(channel->Unlock(kFirst) == 0);
  }
  CHECK(channel->Lock(kSecond, 0) == 0);

  const auto start = steady_clock::now();
  CHECK(channel->Lock(kFirst, 60) == kChannelLocked);
  CHECK(steady_clock::now() - start >= std::chrono::milliseconds(55));
}

TEST_CASE("lock: many threads of two owners never hold it together") {
  const auto channel = MakeDevice();
  std::atomic<int> inside[2] = {0, 0};
  std::atomic<bool> overlapped = false;
  std::atomic<int> failures = 0;
  const auto work = [&](int owner) {
    for (int round = 0; round < 500; ++round) {
      if (channel->Lock(&g_owners[owner], kLong) != 0) {
        ++failures;
        return;
      }
      ++inside[owner];
      if (inside[1 - owner] != 0)
        overlapped = true;
      --inside[owner];
      if (channel->Unlock(&g_owners[owner]) != 0)
        ++failures;
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back(work, i % 2);
  for (std::thread& thread : threads)
    thread.join();
  CHECK(failures == 0);
  CHECK_FALSE(overlapped);
  CHECK(channel->Lock(kFirst, 0) == 0);
}
