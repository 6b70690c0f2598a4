#include "host/channel/ChannelSlot.h"
#include "tests/host/Device.h"

#include <atomic>
#include <thread>

using namespace host;

namespace {

int g_owner;

} // namespace

TEST_CASE("slot: a channel that is used stays, until the last lock is given back") {
  ChannelSlot slot;
  int other = 0;
  REQUIRE(slot.Replace(MakeDevice()));
  CHECK(slot.GetState() == 1);
  CHECK(slot.WaitUntilOpen() == kChannelOk);
  CHECK_FALSE(slot.IsConnecting());
  CHECK(slot.Lock(&g_owner, 0) == kChannelOk);
  CHECK(slot.Lock(&g_owner, 0) == kChannelOk);
  CHECK(slot.Lock(&other, 0) == kChannelLocked);
  CHECK(slot.Unlock(&other) == kNotLocked);
  CHECK(slot.Unlock(&g_owner) == kChannelOk);
  CHECK_FALSE(slot.Replace(nullptr));
  CHECK(slot.IsUsed());
  CHECK(slot.Unlock(&g_owner) == kChannelOk);
  CHECK(slot.Replace(nullptr));
  CHECK_FALSE(slot.IsConnecting());
}

TEST_CASE("slot: a lock counts as given back whatever the channel says to that") {
  ChannelOptions options;
  options.faults.push_back(ParseFault("Unlock=3").value());
  ChannelSlot slot;
  REQUIRE(slot.Replace(MakeDevice(options)));
  REQUIRE(slot.Lock(&g_owner, 0) == kChannelOk);
  CHECK(slot.Unlock(&g_owner) == 3);
  CHECK_FALSE(slot.IsUsed());
  CHECK(slot.Replace(nullptr));
}

// A client that locks, works and unlocks as fast as it can, while channels come and go: it finds one or none, and never
// one that has ended. The sanitizers watch.
TEST_CASE("slot: channels change while a client comes and goes") {
  ChannelSlot slot;
  std::atomic<bool> stop = false;
  std::atomic<int> answers = 0;
  std::thread client([&] {
    char buffer[64];
    std::uint64_t count = 0;
    while (!stop) {
      if (slot.Lock(&g_owner, 0) != kChannelOk)
        continue;
      slot.Transmit("id\n", 3, &count);
      answers += slot.Receive(buffer, sizeof buffer, &count) == kChannelOk && count != 0;
      slot.Unlock(&g_owner);
    }
  });
  int made = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while ((made < 200 || answers < 200) && std::chrono::steady_clock::now() < end) {
    auto channel = made % 2 == 0 ? MakeDevice() : nullptr;
    made += slot.Replace(std::move(channel)) ? 1 : 0;
  }
  stop = true;
  client.join();
  CHECK(made >= 200);
  CHECK(answers >= 200);
}

TEST_CASE("slot: an empty one answers every operation") {
  ChannelSlot slot;
  CHECK(slot.Lock(&g_owner, 0) == kChannelLocked);
  CHECK_FALSE(slot.IsUsed());
  CHECK(slot.Unlock(&g_owner) == kNotLocked);
  CHECK(slot.GetState() == 0);
  CHECK(slot.WaitUntilOpen() == kNotOpen);
  CHECK(std::string(slot.GetInfoString(OND_INFO_DESCRIPTION, 0)).empty());
  std::uint64_t count = 5;
  CHECK(slot.Receive(nullptr, 0, &count) == kNotOpen);
  CHECK(count == 0);
  CHECK(Send(slot, "a", 1, 1) == kNotOpen);
  CHECK(slot.ReadDirectory() == kNotOpen);
  CHECK(slot.GetDirectoryEntryCount() == 0);
}
