// The channel double of the other tests must itself notice what it is there to notice.
#include "tests/support/GuardedChannel.h"
#include "tests/host/Device.h"

using namespace host;

TEST_CASE("double: a well-behaved client passes and is recorded") {
  GuardedChannel channel;
  int owner = 0;
  CHECK(channel.Lock(&owner, 500) == 0);
  CHECK(channel.Lock(&owner, 500) == 0);
  std::uint64_t written = 0;
  CHECK(channel.Transmit("ver", 3, &written) == 0);
  CHECK(channel.Unlock(&owner) == 0);
  CHECK(channel.LockDepth() == 1);
  CHECK(channel.DeleteDeviceFile(3) == 0);
  CHECK(channel.Unlock(&owner) == 0);
  CHECK(channel.GetState() == 1);
  CHECK(channel.Calls() ==
        std::vector<std::string>{"Lock", "Lock", "Transmit ver", "Unlock", "DeleteDeviceFile 3", "Unlock", "GetState"});
  CHECK(channel.TakeViolations().empty());
}

TEST_CASE("double: notices an unlocked device, strangers and locks that do not pair") {
  const auto device = MakeDevice();
  GuardedChannel channel(device.get());
  int owner = 0;
  int other = 0;
  channel.ReadDirectory();
  channel.Unlock(&owner);
  CHECK(channel.Lock(&owner, 0) == 0);
  CHECK(channel.Lock(&other, 0) == kChannelLocked);
  channel.Unlock(&other);
  CHECK(channel.TakeViolations() == std::vector<std::string>{"not locked during ReadDirectory", "Unlock without Lock",
                                                             "Unlock by another owner than Lock"});
  CHECK(channel.LockDepth() == 1);
  CHECK(channel.Unlock(&owner) == 0);
  CHECK(channel.LockDepth() == 0);
}
