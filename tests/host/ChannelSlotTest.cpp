#include "host/channel/ChannelSlot.h"
#include "tests/host/Device.h"

#include <atomic>
#include <thread>

using namespace host;

namespace {

int g_owners[2];
void* const kFirst = &g_owners[0];
void* const kSecond = &g_owners[1];

// Tells when it ends.
class WatchedChannel : public ForwardingChannel {
public:
  explicit WatchedChannel(std::atomic<int>& ended, const ChannelOptions& options = {})
      : ForwardingChannel(MakeDevice(options)), m_ended(ended) {}
  ~WatchedChannel() override { ++m_ended; }

private:
  std::atomic<int>& m_ended;
};

} // namespace

TEST_CASE("slot: empty, it is closed and cannot be locked") {
  ChannelSlot slot;
  CHECK(slot.GetState() != 1);
  CHECK(std::string(slot.GetInfoString(OND_INFO_DESCRIPTION, 0)).empty());
  CHECK(slot.Lock(kFirst, 0) != kChannelOk);
  CHECK(slot.Unlock(kFirst) != kChannelOk);
  CHECK_FALSE(slot.IsUsed());
}

TEST_CASE("slot: what is plugged in is reached, and ends when it is pulled out") {
  std::atomic<int> ended = 0;
  ChannelSlot slot;
  REQUIRE(slot.Replace(std::make_unique<WatchedChannel>(ended)));
  CHECK(slot.GetState() == 1);
  REQUIRE(slot.Lock(kFirst, 0) == kChannelOk);
  CHECK(Ask(slot, "echo hello\n") == "hello\r\n");
  CHECK(Send(slot, "abc", 4, 2) == kChannelOk);
  CHECK(DirectoryOf(slot) == "4:2:3");
  CHECK(slot.Unlock(kFirst) == kChannelOk);
  REQUIRE(slot.Replace(std::make_unique<WatchedChannel>(ended)));
  CHECK(ended == 1);
  CHECK(DirectoryOf(slot).empty());
  REQUIRE(slot.Replace(nullptr));
  CHECK(ended == 2);
  CHECK(slot.GetState() != 1);
}

TEST_CASE("slot: what is used stays") {
  std::atomic<int> ended = 0;
  ChannelSlot slot;
  REQUIRE(slot.Replace(std::make_unique<WatchedChannel>(ended)));
  REQUIRE(slot.Lock(kFirst, 0) == kChannelOk);
  REQUIRE(slot.Lock(kFirst, 0) == kChannelOk);
  CHECK(slot.Unlock(kSecond) != kChannelOk);
  CHECK(slot.Lock(kSecond, 0) != kChannelOk);
  CHECK(slot.Unlock(kFirst) == kChannelOk);
  CHECK(slot.IsUsed());
  CHECK_FALSE(slot.Replace(nullptr));
  CHECK(ended == 0);
  CHECK(slot.GetState() == 1);
  CHECK(slot.Unlock(kFirst) == kChannelOk);
  CHECK_FALSE(slot.IsUsed());
  CHECK(slot.Replace(nullptr));
}

TEST_CASE("slot: injected faults of the lock leave no trace") {
  std::atomic<int> ended = 0;
  ChannelOptions options;
  options.faults = {{FaultyOperation::kLock, 1, kChannelLocked}, {FaultyOperation::kUnlock, 0, kNotLocked}};
  ChannelSlot slot;
  REQUIRE(slot.Replace(std::make_unique<WatchedChannel>(ended, options)));
  CHECK(slot.Lock(kFirst, 0) == kChannelLocked);
  CHECK_FALSE(slot.IsUsed());
  CHECK(slot.Lock(kFirst, 0) == kChannelOk);
  CHECK(slot.IsUsed());
  CHECK(slot.Unlock(kFirst) == kNotLocked);
  CHECK(slot.Replace(nullptr));
}

// A client that locks, works and unlocks as fast as it can, while channels come and go: it finds one or none, and never
// one that has ended. The sanitizers watch.
TEST_CASE("slot: channels change while a client comes and goes") {
  std::atomic<int> ended = 0;
  ChannelSlot slot;
  std::atomic<bool> stop = false;
  std::atomic<int> answers = 0;
  std::thread client([&] {
    char buffer[64];
    std::uint64_t count = 0;
    while (!stop) {
      if (slot.Lock(kFirst, 0) != kChannelOk)
        continue;
      slot.Transmit("id\n", 3, &count);
      answers += slot.Receive(buffer, sizeof buffer, &count) == kChannelOk && count != 0;
      slot.Unlock(kFirst);
    }
  });
  int made = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while ((made < 200 || answers < 200) && std::chrono::steady_clock::now() < end) {
    auto channel = made % 2 == 0 ? std::make_unique<WatchedChannel>(ended) : nullptr;
    made += slot.Replace(std::move(channel)) ? 1 : 0;
  }
  stop = true;
  client.join();
  CHECK(made >= 200);
  CHECK(answers >= 200);
}
