// The channel double of the other tests must itself notice what it is there to notice.
#include "tests/support/GuardedChannel.h"

#include <doctest/doctest.h>

TEST_CASE("double: notices an unlocked device, strangers and locks that do not pair") {
  GuardedChannel channel;
  int owner = 0;
  int other = 0;
  channel.ReadDirectory();
  channel.Unlock(&owner);
  CHECK(channel.Lock(&owner, 0) == 0);
  CHECK(channel.Lock(&other, 0) == 1);
  channel.Unlock(&other);
  CHECK(channel.TakeViolations() == std::vector<std::string>{"not locked during ReadDirectory", "Unlock without Lock",
                                                             "Unlock by another owner than Lock"});
  CHECK(channel.LockDepth() == 1);
  CHECK(channel.Unlock(&owner) == 0);
  CHECK(channel.LockDepth() == 0);
}
